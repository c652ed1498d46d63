#pragma once

#include "library/BackupJob.h"
#include "library/RestoreJob.h"

#include <sigc++/signal.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace corvel {

/// The library's backups: one a day by itself, more by hand, and the way back. A library in memory
/// has none.
class BackupKeeper {
public:
    /// All must outlive the keeper. `save` saves what is being edited, false when that failed.
    BackupKeeper(PersistenceController& controller,
                 std::function<bool()> save,
                 BackupChecker checker = BackupChecker());

    /// From now on the backup of the day is made when it is due, a while after the start at the
    /// earliest.
    void start();

    /// The newest first.
    std::vector<BackupInfo> list() const;
    void backUpNow();
    /// Makes `backup` the library; `signalRestored` follows, or a fault.
    void restore(const BackupInfo& backup);
    /// Ends a restoration under way; the library stays as it is.
    void cancelRestore();

    bool isWorking() const { return m_job || m_restore; }
    bool isRestoring() const { return m_restore != nullptr; }
    /// Of what is under way, from 0 to 1.
    double fraction() const { return m_fraction; }
    /// Why the last backup was not made; none after one that was.
    const std::optional<BackupFault>& backupFault() const { return m_backupFault; }
    const std::optional<RestoreFault>& restoreFault() const { return m_restoreFault; }

    /// A backup was made or failed, or work began, went on or ended.
    sigc::signal<void()>& signalChanged() { return m_changed; }
    /// The library is another one from the next start on: the program has to start again at once.
    sigc::signal<void()>& signalRestored() { return m_restored; }

private:
    bool isPossible() const { return !m_controller.folder().empty(); }
    void look();
    void begin(BackupKind kind);
    void ended(const BackupOutcome& outcome);
    void restoreEnded(const RestoreOutcome& outcome);
    void showProgress(double fraction);

    PersistenceController& m_controller;
    std::function<bool()> m_save;
    BackupChecker m_checker;
    std::unique_ptr<BackupJob> m_job;
    std::unique_ptr<RestoreJob> m_restore;
    double m_fraction = 0;
    std::optional<BackupFault> m_backupFault;
    std::optional<RestoreFault> m_restoreFault;
    sigc::signal<void()> m_changed;
    sigc::signal<void()> m_restored;
    ScopedConnection m_first;
    ScopedConnection m_timer;
    ScopedConnection m_end;
};

}  // namespace corvel
