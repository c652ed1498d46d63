#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// An image that was embedded in a page.
struct EmailImage {
    std::string contentID;
    std::string mimeType;
    std::string base64;
};

/// Images taken out of a page: `html` names each by "cid:" and its content id. An image that is
/// embedded twice is one.
struct EmailImages {
    std::string html;
    std::vector<EmailImage> images;

    static EmailImages takenFrom(std::string_view html);
};

}  // namespace corvel
