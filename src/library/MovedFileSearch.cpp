#include "library/MovedFileSearch.h"

#include "platform/DistantVolumes.h"
#include "platform/Handle.h"

#include <dirent.h>
#include <sys/stat.h>

#include <string_view>

namespace corvel {

namespace {

using Path = std::filesystem::path;
using Directory = Handle<DIR, closedir>;

bool isIt(const Path& path, const FileStamp& identity) {
    const auto stamp = stampOf(path);
    return stamp && stamp->isSameFile(identity);
}

}  // namespace

std::optional<Path> fileInFolder(const Path& folder, const FileStamp& identity) {
    const Directory open(opendir(folder.c_str()));
    if (!open) return std::nullopt;
    while (const auto* entry = readdir(open.get())) {
        if (entry->d_ino != identity.inode || entry->d_type == DT_DIR) continue;
        auto path = folder / entry->d_name;
        if (isIt(path, identity)) return path;
    }
    return std::nullopt;
}

MovedFileSearch::MovedFileSearch(const Path& lastPath,
                                 const FileStamp& identity,
                                 std::size_t mostEntries)
    : m_identity(identity), m_most(mostEntries), m_top(lastPath.parent_path()) {
    m_pending.push_back(m_top);
}

bool MovedFileSearch::step() {
    if (m_pending.empty() && !m_isAtRoot) climb();
    if (m_found || m_pending.empty() || m_entries >= m_most) return false;
    const auto folder = m_pending.front();
    m_pending.pop_front();
    readFolder(folder);
    return !m_found;
}

void MovedFileSearch::climb() {
    const auto above = m_top.parent_path();
    m_isAtRoot = above == m_top;
    if (m_isAtRoot) return;
    m_top = above;
    m_pending.push_back(above);
}

// What is on another volume has inodes of its own. The volume is that of the first folder there is:
// layered file systems give folders and files different ones.
void MovedFileSearch::readFolder(const Path& folder) {
    if (!distantVolumes::answersFor(folder)) return;
    struct stat status {};
    const Directory open(opendir(folder.c_str()));
    if (!open || fstat(dirfd(open.get()), &status) != 0) return;
    if (!m_device) m_device = status.st_dev;
    if (status.st_dev != *m_device || !m_visited.insert(status.st_ino).second) return;
    while (const auto* entry = readdir(open.get())) {
        if (++m_entries > m_most) return;
        const std::string_view name = entry->d_name;
        if (entry->d_ino == m_identity.inode && isIt(folder / name, m_identity)) {
            m_found = folder / name;
            return;
        }
        // Not every file system says what an entry is.
        const bool mayBeFolder = entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN;
        if (mayBeFolder && !name.starts_with('.')) m_pending.push_back(folder / name);
    }
}

}  // namespace corvel
