#pragma once

#include "platform/FileStamp.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace corvel {

using TextHash = std::array<std::uint8_t, 32>;

/// SHA-256.
TextHash hashOf(std::string_view bytes);

/// What a note remembers of the file it mirrors: where it is, which file it is, and what file and
/// note held when both last were the same. The bytes are described in docs/linked-files.md.
struct Bookmark {
    std::filesystem::path path;  ///< as the user chose it, links included; any bytes
    FileStamp stamp;             ///< `changedAt` is zero when it could not be relied on
    TextHash fileHash{};         ///< of the file's bytes
    TextHash noteHash{};         ///< of the note's text

    std::vector<std::uint8_t> encoded() const;
    /// None when the bytes are no bookmark, or one of a later version.
    static std::optional<Bookmark> decode(const std::vector<std::uint8_t>& bytes);

    bool operator==(const Bookmark&) const = default;
};

}  // namespace corvel
