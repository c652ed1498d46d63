#pragma once

#include "app/ExternalFile.h"
#include "platform/FileError.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <variant>

namespace corvel::externalFile {

/// The largest file that can become a note.
inline constexpr std::size_t kLargest = 256 * 1024 * 1024;

/// The first look at a file: a folder, or what keeps it from being opened. Reads its beginning
/// only, and never waits, as opening a pipe would.
struct Probe {
    bool isFolder = false;
    bool isReadable = false;  ///< could be opened for reading
    std::optional<ExternalFault> fault;
};
Probe probe(const std::filesystem::path& path);

/// What a fault of a file means to who wants to open it.
ExternalFault faultOf(FileFault fault);

/// The whole file, with a bookmark by which it can be found again.
std::variant<ExternalFile, ExternalFault> read(const std::filesystem::path& path);

/// A path as it can be shown and logged.
std::string displayed(const std::filesystem::path& path);

}  // namespace corvel::externalFile
