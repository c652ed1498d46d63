#include "library/RestoreJob.h"

#include "model/PendingRestore.h"
#include "model/StoreFiles.h"
#include "platform/Handle.h"

#include <glibmm/main.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace corvel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBytesAtOnce = std::size_t{512} * 1024;
constexpr int kMostTries = 3;
// The shares of the work in its progress.
constexpr double kCopyShare = 0.4;

RestoreFault faultOf(int number) {
    if (number == ENOSPC || number == EDQUOT) return RestoreFault::diskFull;
    if (number == EROFS || number == EACCES || number == EPERM) return RestoreFault::notWritable;
    if (number == ENOENT) return RestoreFault::gone;
    return RestoreFault::failed;
}

}  // namespace

RestoreJob::RestoreJob(PersistenceController& controller, BackupChecker checker, Save save)
    : m_controller(controller), m_checker(std::move(checker)), m_save(std::move(save)) {}

RestoreJob::~RestoreJob() {
    if (m_cancellable) m_cancellable->cancel();
    std::error_code ignored;
    if (!m_folder.empty()) fs::remove_all(m_folder, ignored);
}

void RestoreJob::start(const BackupInfo& backup, Progress progress, Done done) {
    m_backup = backup;
    m_progress = std::move(progress);
    m_done = std::move(done);
    m_timer = Glib::signal_idle().connect([this] {
        prepare();
        return false;
    });
}

void RestoreJob::every(bool (RestoreJob::*slice)()) {
    m_timer = Glib::signal_timeout().connect([this, slice] { return (this->*slice)(); },
                                             static_cast<unsigned>(BackupJob::kPause.count()));
}

void RestoreJob::prepare() {
    std::error_code error;
    const auto folder = pendingRestore::preparing(m_controller.folder());
    fs::remove_all(folder, error);
    if (::mkdir(folder.c_str(), 0700) != 0) return fail(faultOf(errno), std::strerror(errno));
    m_folder = folder;
    m_size = fs::file_size(m_backup.store(), error);
    m_copy.emplace(m_backup.store(), m_folder / storeFiles::kStore);
    every(&RestoreJob::copySome);
}

// The live library must never be the backup's own file: so it is copied, not linked to.
bool RestoreJob::copySome() {
    if (m_copy->step(kBytesAtOnce)) {
        m_copied += kBytesAtOnce;
        const auto share = static_cast<double>(m_copied) / static_cast<double>(m_size + 1);
        if (m_progress) m_progress(kCopyShare * std::min(1.0, share));
        return true;
    }
    const auto copy = std::exchange(m_copy, std::nullopt);
    if (copy->error() != 0) {
        fail(faultOf(copy->error()), std::strerror(copy->error()));
    } else {
        startCheck();
    }
    return false;
}

void RestoreJob::startCheck() {
    m_cancellable = Gio::Cancellable::create();
    m_checker.check(m_folder / storeFiles::kStore, m_cancellable,
                    [this](const BackupVerdict& verdict) { checked(verdict); });
}

void RestoreJob::checked(const BackupVerdict& verdict) {
    if (verdict.kind == BackupVerdict::Kind::newer)
        return fail(RestoreFault::newer, "version " + std::to_string(verdict.version));
    if (verdict.kind != BackupVerdict::Kind::good)
        return fail(RestoreFault::damaged, "the backup did not pass its check");
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(m_backup.attachments(), error))
        m_names.push_back(entry.path().filename());
    if (!m_names.empty()) fs::create_directories(m_controller.attachmentFiles().folder(), error);
    every(&RestoreJob::linkSome);
}

// Files that the present library does not name do it no harm, and go at a next start of it.
bool RestoreJob::linkSome() {
    const auto end = Clock::now() + BackupJob::kSlice;
    do {
        if (m_copy) {
            if (m_copy->step(kBytesAtOnce)) continue;
            const auto copy = std::exchange(m_copy, std::nullopt);
            if (copy->error() == 0) continue;
            fail(faultOf(copy->error()), std::strerror(copy->error()));
            return false;
        }
        if (m_names.empty()) {
            keepPresent();
            return false;
        }
        link(m_names.back());
        m_names.pop_back();
    } while (Clock::now() < end);
    return true;
}

void RestoreJob::link(const fs::path& name) {
    const auto from = m_backup.attachments() / name;
    const auto to = m_controller.attachmentFiles().folder() / name;
    if (::link(from.c_str(), to.c_str()) != 0 && errno != EEXIST) m_copy.emplace(from, to);
}

void RestoreJob::keepPresent() {
    ++m_tries;
    m_keeping = std::make_unique<BackupJob>(m_controller, m_checker);
    m_keeping->start(
        BackupKind::beforeRestore,
        [this](double fraction) {
            if (m_progress) m_progress(kCopyShare + (1 - kCopyShare) * fraction);
        },
        [this](const BackupOutcome& outcome) {
            // The backup's job is still in its call.
            m_timer = Glib::signal_idle().connect([this, outcome] {
                kept(outcome);
                return false;
            });
        });
}

void RestoreJob::kept(const BackupOutcome& outcome) {
    const auto covered = m_keeping->changesCovered();
    m_keeping.reset();
    if (outcome.fault) {
        const bool isFull = *outcome.fault == BackupFault::diskFull;
        return fail(isFull ? RestoreFault::diskFull : RestoreFault::notKept, outcome.detail);
    }
    if (!m_save()) return fail(RestoreFault::notSaved, "the open note was not saved");
    // Typed since: nothing may be lost, so it is kept once more.
    if (changesOf(m_controller) != covered) {
        if (m_tries < kMostTries) return keepPresent();
        return fail(RestoreFault::changed, "the library changes all the time");
    }
    try {
        pendingRestore::commit(m_controller.folder());
        m_folder.clear();
    } catch (const StoreError& error) {
        return fail(RestoreFault::failed, error.what());
    }
    // At once: what were typed now would be lost.
    const auto done = std::move(m_done);
    if (done) done({});
}

void RestoreJob::fail(RestoreFault fault, const std::string& detail) {
    m_outcome = {fault, detail};
    answerLater();
}

void RestoreJob::answerLater() {
    m_timer = Glib::signal_idle().connect([this] {
        const auto done = std::move(m_done);  // may destroy this job
        const auto outcome = std::move(m_outcome);
        if (done) done(outcome);
        return false;
    });
}

}  // namespace corvel
