#pragma once

#include "platform/FileError.h"
#include "platform/FileStamp.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace corvel {

/// A file of the user's as it was read.
struct WholeFile {
    std::string bytes;
    FileStamp stamp;  ///< as of just before the reading
    Date modifiedAt;  ///< what the file says; the clock may have been any
};

/// Throws FileError, also for anything but a regular file and for one larger than `most` bytes.
/// Never waits, as opening a pipe would.
WholeFile readWholeFile(const std::filesystem::path& path, std::size_t most);

/// Puts `bytes` in the place of what the file holds: written beside it, synced, renamed, the folder
/// synced; permissions, owner, access lists and extended attributes are kept, a link keeps leading
/// to it. Where a rename would break something (hard links, an owner who cannot be kept, a folder
/// that takes no new file) the file is written in place, after room for it was made sure of.
/// A file without write permission is not replaced.
///
/// With `expected` nothing is written unless the file still bears that stamp; without, a file that
/// is not there is made. Throws FileError, with the file as it was (in place: as far as that went).
FileStamp writeWholeFile(const std::filesystem::path& path,
                         const std::string& bytes,
                         const std::optional<FileStamp>& expected = {});

}  // namespace corvel
