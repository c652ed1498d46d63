#pragma once

#include "markdown/BareUrl.h"

#include <optional>
#include <string_view>

namespace corvel {

/// Finds the addresses of images as a browser reads them: in any case of letters, with either
/// quotation mark or none. Looks at every byte a bounded number of times.
class ImageSourceScanner {
public:
    explicit ImageSourceScanner(std::string_view html) : m_html(html) {}

    /// The next address, without quotation marks; none at the end.
    std::optional<TextSpan> next();

private:
    struct Attribute {
        std::string_view name;
        TextSpan value;
    };

    bool enterImage();
    std::optional<Attribute> readAttribute();
    TextSpan readValue();

    std::string_view m_html;
    std::size_t m_position = 0;
    bool m_isInside = false;  // behind the name of an image's tag
};

}  // namespace corvel
