#pragma once

#include "platform/Uuid.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <unordered_set>
#include <vector>

namespace corvel {

/// The folder beside the database with one file for each large attachment, named by its id. A file
/// is written and synced before the row that names it commits, and removed after that row is gone,
/// so a crash leaves at most a file that no row names; `sweep` removes those.
class AttachmentFiles {
public:
    /// Data of at least this many bytes is kept in a file.
    static constexpr std::size_t kThreshold = std::size_t{100} * 1024;

    /// An empty path keeps everything in the database (the store in memory).
    explicit AttachmentFiles(std::filesystem::path folder);

    bool keeps(std::size_t size) const { return !m_folder.empty() && size >= kThreshold; }

    /// Writes and syncs the file and its folder. Throws StoreError; then no file is left.
    void write(const Uuid& id, const std::vector<std::uint8_t>& data) const;
    /// None when the file is missing or unreadable.
    std::optional<std::vector<std::uint8_t>> read(const Uuid& id) const;
    void remove(const Uuid& id) const;
    /// Removes every file whose id is not in `named`.
    void sweep(const std::unordered_set<Uuid>& named) const;

    /// Where the file of an attachment lies or would lie. A file never changes once it is written:
    /// it may be linked to.
    std::filesystem::path pathOf(const Uuid& id) const;
    /// Empty for the store in memory.
    const std::filesystem::path& folder() const { return m_folder; }

private:
    std::filesystem::path m_folder;
};

}  // namespace corvel
