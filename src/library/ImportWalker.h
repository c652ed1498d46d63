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
/// however many links lead to it. Nothing of a file is read before all are found, so that progress
/// can be told as a share of the whole. The attachments of an exported library are no files of
/// their own.
class ImportWalker {
public:
    struct File {
        std::filesystem::path path;
        std::filesystem::path folder;  ///< between the chosen folder and the file; empty for none
        /// The chosen folder when that is an exported library; else empty.
        std::filesystem::path library;
    };

    explicit ImportWalker(const std::vector<std::filesystem::path>& paths);

    /// Looks on while `hasFoundAll` is false.
    void step(std::vector<ImportReport::Skipped>& skipped);
    bool hasFoundAll() const { return m_pending.empty() && !m_open; }
    std::size_t foundCount() const { return m_found; }
    /// Chosen folders that are exported libraries, as far as they were opened. One is known before
    /// the first of its files.
    const std::vector<std::filesystem::path>& libraries() const { return m_libraries; }

    /// The next of the files found so far, in the order of names within a directory.
    File take();
    bool isEmpty() const { return m_files.empty(); }

private:
    struct Pending {
        std::filesystem::path path;
        std::filesystem::path folder;
        std::filesystem::path library;
        enum class Kind { chosen, file, unknown } kind = Kind::unknown;
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
    std::vector<std::filesystem::path> m_libraries;
    std::size_t m_found = 0;
};

}  // namespace corvel
