#pragma once

#include "platform/Date.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// Why a backup was made. `beforeRestore` keeps the library that a restored one replaces.
enum class BackupKind { daily, byHand, beforeRestore };

/// A complete backup: a folder with a store and its attachments, as the library itself has them.
struct BackupInfo {
    std::filesystem::path folder;
    BackupKind kind = BackupKind::daily;
    std::string day;  ///< where the user was, "2026-05-17"
    Date madeAt;
    std::uint64_t number = 0;  ///< one more than that of the backup before, whatever the clock says
    std::size_t notes = 0;
    std::uintmax_t bytes = 0;  ///< store and attachments

    std::filesystem::path store() const;
    std::filesystem::path attachments() const;
    bool operator==(const BackupInfo&) const = default;
};

/// The folder of a library's backups. docs/store.md describes it.
class BackupFolder {
public:
    /// So many of each kind are kept.
    static constexpr std::size_t kKept = 7;

    explicit BackupFolder(const std::filesystem::path& library);

    const std::filesystem::path& path() const { return m_path; }
    /// Complete backups, the newest first.
    std::vector<BackupInfo> list() const;
    /// Whether the newest backup that is made every day is of another day than `day`.
    bool isDue(const std::string& day) const;

    /// Makes a new empty folder for a backup that begins; what earlier ones left unfinished is
    /// removed. Throws StoreError.
    std::filesystem::path beginNew() const;
    /// Gives what was begun its name: then it is a backup. Throws StoreError.
    BackupInfo complete(const std::filesystem::path& begun, BackupInfo info) const;
    /// Folders to remove, so that no more than `kKept` of each kind are left. They are no backups
    /// any more.
    std::vector<std::filesystem::path> takeOutOld() const;

private:
    std::filesystem::path freeName(const std::string& day) const;
    std::vector<std::filesystem::path> leftOld() const;

    std::filesystem::path m_path;
};

}  // namespace corvel
