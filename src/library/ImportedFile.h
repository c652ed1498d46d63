#pragma once

#include "library/MarkdownImporter.h"
#include "platform/Date.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>

namespace corvel {

/// A regular file as it was read.
struct ImportedFile {
    std::string bytes;
    Date createdAt;  ///< never after `modifiedAt`: a copied file is older than its copy
    Date modifiedAt;

    /// Reads the whole file; one above `limit` bytes counts as unreadable. Pipes, devices and
    /// folders are not waited for.
    static std::variant<ImportedFile, ImportFault> read(const std::filesystem::path& path,
                                                        std::size_t limit);
};

/// The text in UTF-8, without a byte-order mark: UTF-8, UTF-16 with a mark, else Windows-1250. None
/// when it is not text; NUL bytes are not.
std::optional<std::string> decodedText(std::string bytes);

}  // namespace corvel
