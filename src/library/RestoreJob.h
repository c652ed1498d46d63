#pragma once

#include "library/BackupJob.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// `damaged`, `newer`: the backup itself; `notKept`: the present library could not be kept as a
/// backup first; `changed`: it changed all the time; `notSaved`: what is being edited is not saved.
enum class RestoreFault {
    damaged,
    newer,
    gone,
    diskFull,
    notWritable,
    notKept,
    changed,
    notSaved,
    failed
};

struct RestoreOutcome {
    std::optional<RestoreFault> fault;  ///< none: the backup is the library from the next start on
    std::string detail;
};

/// Makes a backup ready to be the library from the next start on: a checked copy of it, its
/// attachments beside the others, and the present library kept as a backup. Until all of that is
/// there nothing has changed. Works in slices; destroying the job ends it without an answer.
class RestoreJob {
public:
    /// Saves what is being edited; false when that failed.
    using Save = std::function<bool()>;
    using Progress = std::function<void(double fraction)>;
    using Done = std::function<void(const RestoreOutcome& outcome)>;

    /// The controller must outlive the job.
    RestoreJob(PersistenceController& controller, BackupChecker checker, Save save);
    RestoreJob(const RestoreJob&) = delete;
    RestoreJob& operator=(const RestoreJob&) = delete;
    ~RestoreJob();

    /// Calls `done` once, on the main loop, never before this function returns. When it tells of
    /// success the program has to end before anything else is written. To be called once.
    void start(const BackupInfo& backup, Progress progress, Done done);

private:
    using Clock = std::chrono::steady_clock;

    void prepare();
    bool copySome();
    void startCheck();
    void checked(const BackupVerdict& verdict);
    bool linkSome();
    void link(const std::filesystem::path& name);
    void keepPresent();
    void kept(const BackupOutcome& outcome);
    void every(bool (RestoreJob::*slice)());
    void fail(RestoreFault fault, const std::string& detail);
    void answerLater();

    PersistenceController& m_controller;
    BackupChecker m_checker;
    Save m_save;
    BackupInfo m_backup;
    Progress m_progress;
    Done m_done;
    RestoreOutcome m_outcome;
    std::filesystem::path m_folder;
    std::optional<FileCopy> m_copy;
    std::uintmax_t m_copied = 0;
    std::uintmax_t m_size = 0;
    std::vector<std::filesystem::path> m_names;
    std::unique_ptr<BackupJob> m_keeping;
    int m_tries = 0;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    ScopedConnection m_timer;
};

}  // namespace corvel
