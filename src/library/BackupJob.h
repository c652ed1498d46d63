#pragma once

#include "library/BackupFolder.h"
#include "model/BackupCheck.h"
#include "model/PersistenceController.h"
#include "platform/DatabaseCopy.h"
#include "platform/FileCopy.h"
#include "platform/FolderRemoval.h"
#include "platform/ScopedConnection.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// `damaged`: the copy did not pass its check.
enum class BackupFault { diskFull, notWritable, damaged, failed };

struct BackupOutcome {
    std::optional<BackupInfo> made;
    std::optional<BackupFault> fault;
    std::string detail;  ///< of the fault, for the log
};

/// Makes one backup of an open store. It works in slices of a few milliseconds with pauses between,
/// so that whoever types does not notice. Attachments, whose files never change, are linked to, or
/// copied where that is not possible. What is not complete is no backup and goes. Destroying the
/// job ends it without an answer.
class BackupJob {
public:
    using Progress = std::function<void(double fraction)>;
    using Done = std::function<void(const BackupOutcome& outcome)>;

    /// The longest slice is about so long.
    static constexpr std::chrono::milliseconds kSlice{3};
    static constexpr std::chrono::milliseconds kPause{8};

    /// The controller must outlive the job.
    BackupJob(PersistenceController& controller, BackupChecker checker);
    BackupJob(const BackupJob&) = delete;
    BackupJob& operator=(const BackupJob&) = delete;
    ~BackupJob();

    /// Calls `done` once, on the main loop, never before this function returns. To be called once.
    void start(BackupKind kind, Progress progress, Done done);
    /// Changes of the store's rows up to the moment that the backup shows: an equal number later
    /// says that it shows the store as it is.
    std::int64_t changesCovered() const { return m_changes; }

private:
    enum class Stage { begin, links, pages, newLinks, check, removal, end };
    using Clock = std::chrono::steady_clock;

    bool slice();
    void workUntil(Clock::time_point end);
    void begin();
    void checkRoom() const;
    void listFiles();
    bool linkSome(Clock::time_point end);
    void link(const std::filesystem::path& name);
    bool copyPages(Clock::time_point end);
    void listNewFiles();
    void startCheck();
    void checked(const BackupVerdict& verdict);
    void removeOld();
    void fail(BackupFault fault, const std::string& detail);
    void answer();

    PersistenceController& m_controller;
    BackupChecker m_checker;
    BackupFolder m_backups;
    BackupKind m_kind = BackupKind::daily;
    Progress m_progress;
    Done m_done;
    BackupOutcome m_outcome;
    Stage m_stage = Stage::begin;
    std::filesystem::path m_folder;
    std::vector<std::filesystem::path> m_names;  // files to link
    std::optional<FileCopy> m_fileCopy;
    std::optional<DatabaseCopy> m_copy;
    std::vector<std::filesystem::path> m_old;
    std::optional<FolderRemoval> m_removal;
    std::int64_t m_changes = 0;
    std::uintmax_t m_bytes = 0;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    ScopedConnection m_timer;
};

/// Rows changed by the store's connection since it was opened.
std::int64_t changesOf(PersistenceController& controller);

}  // namespace corvel
