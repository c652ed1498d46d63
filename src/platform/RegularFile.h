#pragma once

#include "platform/FileDescriptor.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace corvel {

struct RegularFile {
    FileDescriptor file;
    std::size_t size = 0;  ///< in bytes, as it was opened
};

/// As openForReading, for nothing but a regular file: none, with `errno` set, for anything else.
std::optional<RegularFile> openRegularFile(const std::filesystem::path& path);

/// The bytes of a file somebody else may have put there. None for anything but a regular file, for
/// one larger than `most` bytes, and when reading fails.
std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most);

/// Writes beside the file and renames, so that a failure leaves an older one whole; the bytes are
/// on the disk before the name is. False when that was not possible.
bool replaceFile(const std::filesystem::path& path, const std::string& bytes);

}  // namespace corvel
