#pragma once

#include "platform/FileDescriptor.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace corvel {

/// Which volumes are served by another machine or by a program, as the system's own table has it.
/// Nothing on a volume is touched to find that out.
class MountTable {
public:
    explicit MountTable(std::filesystem::path table = "/proc/self/mountinfo");

    /// The mount point of the first such volume on the way to `path`, an absolute one, through
    /// links; none when all of the way is on this machine's own volumes.
    std::optional<std::filesystem::path> distantOnTheWayTo(const std::filesystem::path& path);

private:
    void refresh();
    void read();
    void readLine(const std::string& line);

    std::filesystem::path m_table;
    FileDescriptor m_changes;  ///< polled: it tells when the table is another one
    bool m_isRead = false;
    std::map<std::filesystem::path, bool> m_isDistant;  ///< by mount point
    bool m_hasDistant = false;
};

}  // namespace corvel
