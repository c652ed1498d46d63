#include "app/BackupKeeper.h"

#include "platform/LocalDay.h"
#include "platform/Log.h"

#include <glibmm/main.h>

#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::seconds kAfterStart{20};
// How soon a new day is noticed, and a backup that failed is tried again.
constexpr std::chrono::minutes kBetweenLooks{30};
constexpr double kVisibleStep = 0.01;

}  // namespace

BackupKeeper::BackupKeeper(PersistenceController& controller,
                           std::function<bool()> save,
                           BackupChecker checker)
    : m_controller(controller), m_save(std::move(save)), m_checker(std::move(checker)) {}

void BackupKeeper::start() {
    if (!isPossible()) return;
    const auto lookEvery = [this](std::chrono::seconds time, bool again) {
        return Glib::signal_timeout().connect_seconds(
            [this, again] {
                look();
                return again;
            },
            static_cast<unsigned>(time.count()));
    };
    m_first = lookEvery(kAfterStart, false);
    m_timer = lookEvery(kBetweenLooks, true);
}

void BackupKeeper::look() {
    if (isWorking()) return;
    if (BackupFolder(m_controller.folder()).isDue(localDay(Date::now()))) begin(BackupKind::daily);
}

std::vector<BackupInfo> BackupKeeper::list() const {
    return isPossible() ? BackupFolder(m_controller.folder()).list() : std::vector<BackupInfo>{};
}

void BackupKeeper::backUpNow() {
    if (isWorking() || !isPossible()) return;
    m_save();
    begin(BackupKind::byHand);
}

void BackupKeeper::begin(BackupKind kind) {
    m_fraction = 0;
    m_job = std::make_unique<BackupJob>(m_controller, m_checker);
    m_job->start(
        kind, [this](double fraction) { showProgress(fraction); },
        [this](const BackupOutcome& outcome) {
            // The job is still in its call.
            m_end = Glib::signal_idle().connect([this, outcome] {
                ended(outcome);
                return false;
            });
        });
    m_changed.emit();
}

void BackupKeeper::ended(const BackupOutcome& outcome) {
    m_job.reset();
    m_backupFault = outcome.fault;
    if (outcome.fault) logLine("Error making backup: " + outcome.detail);
    m_changed.emit();
}

void BackupKeeper::restore(const BackupInfo& backup) {
    if (isWorking() || !isPossible()) return;
    m_restoreFault.reset();
    m_fraction = 0;
    m_restore = std::make_unique<RestoreJob>(m_controller, m_checker, m_save);
    m_restore->start(
        backup, [this](double fraction) { showProgress(fraction); },
        [this](const RestoreOutcome& outcome) {
            // At once, so that nobody types in between.
            if (!outcome.fault) return m_restored.emit();
            m_end = Glib::signal_idle().connect([this, outcome] {
                restoreEnded(outcome);
                return false;
            });
        });
    m_changed.emit();
}

void BackupKeeper::cancelRestore() {
    if (!m_restore || m_end.connected()) return;
    m_restore.reset();
    m_changed.emit();
}

void BackupKeeper::restoreEnded(const RestoreOutcome& outcome) {
    m_restore.reset();
    m_restoreFault = outcome.fault;
    logLine("Error restoring backup: " + outcome.detail);
    m_changed.emit();
}

void BackupKeeper::showProgress(double fraction) {
    if (fraction - m_fraction < kVisibleStep) return;
    m_fraction = fraction;
    m_changed.emit();
}

}  // namespace corvel
