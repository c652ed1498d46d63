#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace corvel {

/// The bytes of a file somebody else may have put there. None for anything but a regular file, for
/// one larger than `most` bytes, and when reading fails; never waits, as opening a pipe would.
std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most);

/// Writes beside the file and renames, so that a failure leaves an older one whole; the bytes are
/// on the disk before the name is. False when that was not possible.
bool replaceFile(const std::filesystem::path& path, const std::string& bytes);

}  // namespace corvel
