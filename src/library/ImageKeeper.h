#pragma once

#include "library/Library.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace corvel {

enum class ImageFault { unreadable, tooLarge, notAnImage, store };

/// Takes images into the library as attachments of a note.
class ImageKeeper {
public:
    static constexpr std::size_t kLargest = std::size_t{64} * 1024 * 1024;

    /// The Markdown that shows the image, or why it was not taken.
    using Taken = std::variant<std::string, ImageFault>;

    explicit ImageKeeper(Library& library) : m_library(library) {}  // must outlive the keeper

    Taken takeFile(const std::filesystem::path& path, const Uuid& noteID) const;
    /// `name` is what the image is called, without an extension.
    Taken take(std::vector<std::uint8_t> bytes, const std::string& name, const Uuid& noteID) const;

private:
    Library& m_library;
};

}  // namespace corvel
