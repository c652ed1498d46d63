#pragma once

#include <optional>
#include <string_view>

namespace corvel {

/// The MIME type of an image by its first bytes, whatever its sender calls it; none for what is no
/// image that a web view shows.
std::optional<std::string_view> imageTypeOf(std::string_view bytes);

}  // namespace corvel
