#include "platform/MountTable.h"

#include <fcntl.h>
#include <glib.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <deque>
#include <fstream>
#include <sstream>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

using Path = std::filesystem::path;

constexpr int kMostLinks = 40;  // as many as the system follows
constexpr std::array<std::string_view, 12> kDistantTypes{"nfs",    "nfs4", "cifs",  "smb3",
                                                         "smbfs",  "9p",   "afs",   "ceph",
                                                         "autofs", "fuse", "davfs", "ncpfs"};

// A disk whose file system a program drives ("fuseblk") answers as others do.
bool isDistantType(std::string_view type) {
    return type.starts_with("fuse.") ||
           std::ranges::find(kDistantTypes, type) != kDistantTypes.end();
}

// Blanks and backslashes stand there as three octal digits.
Path unescaped(const std::string& word) {
    char* const bytes = g_strcompress(word.c_str());
    Path path(bytes);
    g_free(bytes);
    return path;
}

void prepend(std::deque<Path>& parts, const Path& path) {
    parts.insert(parts.begin(), path.begin(), path.end());
}

}  // namespace

MountTable::MountTable(Path table)
    : m_table(std::move(table)), m_changes(::open(m_table.c_str(), O_RDONLY | O_CLOEXEC)) {}

void MountTable::refresh() {
    pollfd changes{m_changes.get(), POLLPRI, 0};
    const bool hasChanged = ::poll(&changes, 1, 0) > 0 && (changes.revents & POLLPRI) != 0;
    if (hasChanged || !std::exchange(m_isRead, true)) read();
}

void MountTable::read() {
    m_isDistant.clear();
    std::ifstream lines(m_table);
    for (std::string line; std::getline(lines, line);)
        readLine(line);
    m_hasDistant = std::ranges::any_of(m_isDistant, [](const auto& mount) { return mount.second; });
}

// "36 35 98:0 /root /mount/point options optional… - type source options". Of several on one point
// the last one is seen.
void MountTable::readLine(const std::string& line) {
    constexpr int kPoint = 4;
    std::istringstream words(line);
    std::string word;
    std::string point;
    for (int i = 0; words >> word && word != "-"; ++i) {
        if (i == kPoint) point = word;
    }
    if (words >> word) m_isDistant[unescaped(point)] = isDistantType(word);
}

// Part by part: a link may lead to another volume, and what lies behind a distant one is not asked.
std::optional<Path> MountTable::distantOnTheWayTo(const Path& path) {
    refresh();
    if (!m_hasDistant) return std::nullopt;
    std::deque<Path> parts;
    prepend(parts, path);
    Path way;
    for (int links = 0; !parts.empty() && links <= kMostLinks;) {
        const Path part = std::exchange(parts.front(), {});
        parts.pop_front();
        if (part == "..") {
            way = way.parent_path();
            continue;
        }
        if (part.empty() || part == ".") continue;
        const Path next = way / part;
        const auto mount = m_isDistant.find(next);
        if (mount != m_isDistant.end() && mount->second) return next;
        std::error_code error;
        const Path target = std::filesystem::read_symlink(next, error);
        if (error) {
            way = next;
        } else {
            ++links;
            prepend(parts, target);  // an absolute one begins anew: "way / "/"" is "/"
        }
    }
    return std::nullopt;
}

}  // namespace corvel
