#pragma once

#include "platform/Date.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace corvel {

/// Which file it is and how it stands, as one look at its inode tells. Times are nanoseconds since
/// 1970 and are compared for equality alone, so a clock that was set back does no harm.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t bornAt = 0;  ///< zero where the file system does not know
    std::int64_t changedAt = 0;
    std::uint64_t size = 0;

    /// The same inode, not another file that was given its number later.
    bool isSameFile(const FileStamp& other) const;
    /// False while a further change could leave the very same stamp: clocks of file systems tick
    /// some milliseconds apart.
    bool isSettled(Date now) const;

    bool operator==(const FileStamp&) const = default;
};

/// The stamp of the regular file to which `path` leads, through links; none for anything else.
std::optional<FileStamp> stampOf(const std::filesystem::path& path);
/// Of an open file; none unless it is a regular one.
std::optional<FileStamp> stampOf(int descriptor);

}  // namespace corvel
