#pragma once

#include "platform/FileStamp.h"

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <filesystem>
#include <optional>
#include <set>

namespace corvel {

/// The file with this identity in one folder, not below it.
std::optional<std::filesystem::path> fileInFolder(const std::filesystem::path& folder,
                                                  const FileStamp& identity);

/// Looks for a file that was moved on its volume, by its inode: in the folder where it was, below
/// it, then in the folder above and below that, and so on up to the volume's root, the nearest
/// first. Hidden folders, the desktop's trash among them, and other volumes are left out. Works in
/// steps and ends after so many entries that it never takes more than a moment.
class MovedFileSearch {
public:
    static constexpr std::size_t kMostEntries = 50'000;

    MovedFileSearch(const std::filesystem::path& lastPath,
                    const FileStamp& identity,
                    std::size_t mostEntries = kMostEntries);

    /// Reads one folder; false when there is nothing more to read, or the file was found.
    bool step();
    const std::optional<std::filesystem::path>& found() const { return m_found; }

private:
    void climb();
    void readFolder(const std::filesystem::path& folder);

    FileStamp m_identity;
    std::size_t m_most;
    std::filesystem::path m_top;  // the folder whose surroundings are being searched
    std::deque<std::filesystem::path> m_pending;
    std::optional<dev_t> m_device;
    std::set<ino_t> m_visited;
    std::optional<std::filesystem::path> m_found;
    std::size_t m_entries = 0;
    bool m_isAtRoot = false;
};

}  // namespace corvel
