#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// The MIME type by a path's extension; "image/png" for any other.
std::string_view imageMimeType(std::string_view path);

/// `text` with "%XX" decoded; unchanged when that gives no valid text.
std::string percentDecoded(std::string_view text);

/// The bytes of the file at `path`. None when there is no such file, when it is no regular file or
/// over 64 MB, or lies where no image of a note may come from: /proc, /sys, /dev, or the program's
/// own data folder. Never waits for the other end of a pipe or a device.
std::optional<std::vector<std::uint8_t>> readLocalImage(const std::string& path);

struct ImageBeside {
    std::string_view mimeType;  ///< by its bytes, whatever its name says
    std::vector<std::uint8_t> bytes;
};

/// The image that `address`, relative and as it stands in a page, means for a text in `folder`.
/// None unless it lies there or in a folder below, where all links lead, and is an image; else as
/// above.
std::optional<ImageBeside> readImageBeside(const std::filesystem::path& folder,
                                           std::string_view address);

}  // namespace corvel
