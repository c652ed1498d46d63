#pragma once

#include "library/MarkdownCode.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// An image that Markdown shows: where its address stands, and the file that is meant.
struct ImageReference {
    TextRange address;  ///< without angle brackets and quotation marks
    std::string path;   ///< relative, escapes and percent-encoding undone
};

/// Images outside code that a relative path names, in the order of their addresses: `![](path)`,
/// definitions that `![][label]` uses, and `<img src>`.
std::vector<ImageReference> imageReferencesIn(std::string_view markdown);

}  // namespace corvel
