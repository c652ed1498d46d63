#include "library/BackupJob.h"

#include "model/StoreFiles.h"
#include "platform/LocalDay.h"

#include <glibmm/main.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace corvel {

namespace fs = std::filesystem;

namespace {

constexpr int kPagesAtOnce = 16;
constexpr std::size_t kBytesAtOnce = std::size_t{128} * 1024;
// What has to stay free on the disk: the user's next words come first.
constexpr std::uintmax_t kRoomToLeave = std::uintmax_t{64} * 1024 * 1024;

BackupFault faultOf(const StoreError& error) {
    if (error.fault() == StoreFault::diskFull) return BackupFault::diskFull;
    if (error.fault() == StoreFault::readOnly) return BackupFault::notWritable;
    return BackupFault::failed;
}

StoreError errorOf(int number, const fs::path& path) {
    const auto fault = number == ENOSPC || number == EDQUOT ? StoreFault::diskFull
                       : number == EROFS || number == EACCES || number == EPERM
                           ? StoreFault::readOnly
                           : StoreFault::failed;
    return {fault, path.string() + ": " + std::strerror(number)};
}

}  // namespace

std::int64_t changesOf(PersistenceController& controller) {
    return sqlite3_total_changes64(controller.viewContext().database().handle());
}

BackupJob::BackupJob(PersistenceController& controller, BackupChecker checker)
    : m_controller(controller), m_checker(std::move(checker)), m_backups(controller.folder()) {}

BackupJob::~BackupJob() {
    if (m_cancellable) m_cancellable->cancel();
    m_copy.reset();
    std::error_code ignored;
    if (!m_folder.empty()) fs::remove_all(m_folder, ignored);
    for (const auto& old : m_old)
        fs::remove_all(old, ignored);
}

void BackupJob::start(BackupKind kind, Progress progress, Done done) {
    m_kind = kind;
    m_progress = std::move(progress);
    m_done = std::move(done);
    m_timer = Glib::signal_timeout().connect(
        [this] { return slice(); }, static_cast<unsigned>(kPause.count()), Glib::PRIORITY_LOW);
}

bool BackupJob::slice() {
    try {
        workUntil(Clock::now() + kSlice);
    } catch (const StoreError& error) {
        fail(faultOf(error), error.what());
    }
    if (m_stage == Stage::check) return false;
    if (m_stage != Stage::end) return true;
    answer();
    return false;
}

// One stage a slice at most.
void BackupJob::workUntil(Clock::time_point end) {
    switch (m_stage) {
        case Stage::begin:
            return begin();
        case Stage::links:
            if (!linkSome(end)) m_stage = Stage::pages;
            return;
        case Stage::pages:
            if (!copyPages(end)) listNewFiles();
            return;
        case Stage::newLinks:
            if (!linkSome(end)) startCheck();
            return;
        case Stage::removal:
            return removeOld();
        case Stage::check:
        case Stage::end:
            return;
    }
}

void BackupJob::begin() {
    m_folder = m_backups.beginNew();
    checkRoom();
    listFiles();
    m_stage = Stage::links;
}

void BackupJob::checkRoom() const {
    std::error_code error;
    const auto size = fs::file_size(m_controller.folder() / storeFiles::kStore, error);
    struct statvfs disk {};
    if (error || ::statvfs(m_folder.c_str(), &disk) != 0) return;
    if (std::uintmax_t{disk.f_bavail} * disk.f_frsize < size + kRoomToLeave)
        throw errorOf(ENOSPC, m_folder);
}

// All there are now: what is deleted while the store is copied was linked before.
void BackupJob::listFiles() {
    std::error_code error;
    for (const auto& entry :
         fs::directory_iterator(m_controller.attachmentFiles().folder(), error)) {
        m_names.push_back(entry.path().filename());
    }
    if (!m_names.empty()) fs::create_directory(m_folder / storeFiles::kAttachments, error);
}

bool BackupJob::linkSome(Clock::time_point end) {
    do {
        if (m_fileCopy) {
            if (m_fileCopy->step(kBytesAtOnce)) continue;
            const auto copy = std::exchange(m_fileCopy, std::nullopt);
            if (copy->error() != 0 && !copy->isSourceBad()) throw errorOf(copy->error(), m_folder);
        } else if (m_names.empty()) {
            return false;
        } else {
            link(m_names.back());
            m_names.pop_back();
        }
    } while (Clock::now() < end);
    return true;
}

void BackupJob::link(const fs::path& name) {
    const auto from = m_controller.attachmentFiles().folder() / name;
    const auto to = m_folder / storeFiles::kAttachments / name;
    if (::link(from.c_str(), to.c_str()) != 0) {
        if (errno == ENOENT || errno == EEXIST) return;  // deleted meanwhile, or there
        m_fileCopy.emplace(from, to);
    }
    std::error_code error;
    const auto size = fs::file_size(from, error);
    if (!error) m_bytes += size;
}

bool BackupJob::copyPages(Clock::time_point end) {
    if (!m_copy) {
        m_copy.emplace(m_controller.viewContext().database(), m_folder / storeFiles::kStore);
        return true;
    }
    auto state = DatabaseCopy::State::working;
    while (state == DatabaseCopy::State::working && Clock::now() < end) {
        // What the last step covers, nothing can change before it returns.
        m_changes = changesOf(m_controller);
        state = m_copy->step(kPagesAtOnce);
    }
    m_copy->beginWriting();
    if (m_progress) m_progress(m_copy->fraction());
    return state != DatabaseCopy::State::done;
}

// What came while the store was copied.
void BackupJob::listNewFiles() {
    m_copy.reset();
    std::error_code error;
    const auto folder = m_folder / storeFiles::kAttachments;
    auto query =
        m_controller.viewContext().database().query("SELECT id FROM attachment WHERE isInFile=1");
    while (query.next()) {
        const fs::path name = query.uuid(0).toString();
        if (!fs::exists(folder / name, error)) m_names.push_back(name);
    }
    if (!m_names.empty()) fs::create_directory(folder, error);
    m_stage = Stage::newLinks;
}

void BackupJob::startCheck() {
    m_stage = Stage::check;
    m_cancellable = Gio::Cancellable::create();
    m_checker.check(m_folder / storeFiles::kStore, m_cancellable,
                    [this](const BackupVerdict& verdict) { checked(verdict); });
}

void BackupJob::checked(const BackupVerdict& verdict) {
    try {
        if (verdict.kind != BackupVerdict::Kind::good) {
            fail(BackupFault::damaged, "the copy of the library did not pass its check");
        } else {
            std::error_code error;
            BackupInfo info;
            info.kind = m_kind;
            info.madeAt = Date::now();
            info.day = localDay(info.madeAt);
            info.notes = verdict.notes;
            info.bytes = m_bytes + fs::file_size(m_folder / storeFiles::kStore, error);
            m_outcome.made = m_backups.complete(m_folder, info);
            m_folder.clear();
            m_old = m_backups.takeOutOld();
            m_stage = Stage::removal;
        }
    } catch (const StoreError& error) {
        fail(faultOf(error), error.what());
    }
    m_timer = Glib::signal_timeout().connect(
        [this] { return slice(); }, static_cast<unsigned>(kPause.count()), Glib::PRIORITY_LOW);
}

void BackupJob::removeOld() {
    if (m_removal && m_removal->work(Clock::now() + kSlice)) return;
    m_removal.reset();
    if (m_old.empty()) {
        m_stage = Stage::end;
        return;
    }
    m_removal.emplace(std::move(m_old.back()));
    m_old.pop_back();
}

void BackupJob::fail(BackupFault fault, const std::string& detail) {
    m_outcome.fault = fault;
    m_outcome.detail = detail;
    m_copy.reset();
    m_fileCopy.reset();
    if (!m_folder.empty()) m_old.push_back(std::exchange(m_folder, {}));
    m_stage = Stage::removal;
}

void BackupJob::answer() {
    const auto done = std::move(m_done);  // may destroy this job
    const auto outcome = std::move(m_outcome);
    if (done) done(outcome);
}

}  // namespace corvel
