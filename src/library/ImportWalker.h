#pragma once

#include "library/MarkdownImporter.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace corvel {

/// Finds the files of an import, a few directory entries at a step. Every directory is read once,
/// however many links lead to it.
class ImportWalker {
public:
    struct File {
        std::filesystem::path path;
        std::filesystem::path folder;  ///< between the chosen folder and the file; empty for none
    };

    explicit ImportWalker(const std::vector<std::filesystem::path>& paths);

    /// The next file; none when this step found none. Reads on while there `isFinished` is not.
    std::optional<File> step(std::vector<ImportReport::Skipped>& skipped);
    bool isFinished() const { return m_files.empty() && m_pending.empty() && !m_open; }
    std::size_t foundCount() const { return m_found; }

private:
    struct Pending {
        std::filesystem::path path;
        std::filesystem::path folder;
        bool isChosen;
    };

    void look(const Pending& pending, std::vector<ImportReport::Skipped>& skipped);
    void openDirectory(const Pending& pending, std::vector<ImportReport::Skipped>& skipped);
    void readEntries(std::vector<ImportReport::Skipped>& skipped);

    std::deque<Pending> m_pending;
    std::deque<File> m_files;
    std::optional<std::filesystem::directory_iterator> m_open;
    Pending m_directory;
    std::vector<Pending> m_entries;  // of the open directory so far
    std::set<std::pair<dev_t, ino_t>> m_visited;
    std::size_t m_found = 0;
};

}  // namespace corvel
