#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvel::imagepasses {

// Each pass behaves as its regular expression, but looks at every byte a bounded number of times,
// however large an embedded image is and however hostile the text.

/// The text to stand for a reference; none leaves it as it is.
using Replacement = std::function<std::optional<std::string>(std::string_view)>;

/// Each "attachment://([0-9A-Fa-f\-]{36})" whose group `replacement` knows, replaced whole.
std::string replaceAttachments(std::string html, const Replacement& replacement);

/// Group 2 of each "(<img\s[^>]*src\s*=\s*\")(/[^\"]+)(\"[^>]*>)", where `replacement` has one.
std::string replaceLocalSources(std::string html, const Replacement& replacement);

/// The http or https address of each image, as it is written, where `replacement` has another.
std::string replaceRemoteSources(std::string html, const Replacement& replacement);

/// Writes `scheme` before the http or https address of each image.
std::string markRemoteSources(std::string html, std::string_view scheme);

/// The relative address of each image, as it is written, where `replacement` has another.
std::string replaceRelativeSources(std::string html, const Replacement& replacement);

/// "(<img\s[^>]*>)\s*\{width=([^}]+)\}": the width becomes a style of the image.
std::string applyWidths(std::string html);

}  // namespace corvel::imagepasses
