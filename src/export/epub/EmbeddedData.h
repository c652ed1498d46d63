#pragma once

#include <string>
#include <vector>

namespace corvel {

/// Keeps long `data:` URLs of images aside while a page is parsed: parsers have limits for what
/// stands in an attribute, and images are megabytes.
class EmbeddedData {
public:
    /// `html` with a short `data:` URL in the place of each long one.
    std::string takeOut(const std::string& html);
    std::string putBack(const std::string& html) const;

private:
    std::vector<std::string> m_urls;
    std::string m_mark;  // stands in `takeOut`'s text for these only
};

}  // namespace corvel
