#pragma once

#include <string_view>

namespace corvel {

/// The MIME type of an image by its first bytes, whatever its name says; empty for anything that
/// the preview does not show as an image.
std::string_view imageTypeOf(std::string_view bytes);

/// The usual extension of such a type, with the dot.
std::string_view imageExtension(std::string_view mimeType);

/// The types that `imageTypeOf` knows, as a clipboard offers them, those first that lose nothing
/// and are small.
inline constexpr const char* kImageTypes[] = {"image/png",  "image/webp", "image/avif",
                                              "image/jpeg", "image/gif",  "image/svg+xml",
                                              "image/heic", "image/tiff", "image/bmp"};

}  // namespace corvel
