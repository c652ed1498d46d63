#include "platform/DatabaseCopy.h"

#include "platform/MainThread.h"

#include <fcntl.h>

namespace corvel {

namespace {

// Nothing is lost with a copy that a crash leaves: it needs neither journal nor syncing. A small
// cache writes as it goes, so that no step has much to write at once.
constexpr const char* kForOneWriter =
    "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA cache_size=-256;";

Handle<sqlite3, sqlite3_close_v2> openNew(const std::filesystem::path& file) {
    sqlite3* raw = nullptr;
    const int result =
        sqlite3_open_v2(file.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Handle<sqlite3, sqlite3_close_v2> database(raw);
    if (result != SQLITE_OK) throw StoreError(faultOfSqlite(result), sqlite3_errstr(result));
    sqlite3_exec(raw, kForOneWriter, nullptr, nullptr, nullptr);
    return database;
}

}  // namespace

DatabaseCopy::DatabaseCopy(Database& from, const std::filesystem::path& to)
    : m_file(::open(to.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644))
    , m_to(openNew(to))
    , m_backup(sqlite3_backup_init(m_to.get(), "main", from.handle(), "main")) {
    if (!m_backup) {
        throw StoreError(faultOfSqlite(sqlite3_errcode(m_to.get())), sqlite3_errmsg(m_to.get()));
    }
}

DatabaseCopy::State DatabaseCopy::step(int pages) {
    checkMainThread();
    const int result = sqlite3_backup_step(m_backup.get(), pages);
    if (result == SQLITE_OK) return State::working;
    if (result == SQLITE_BUSY || result == SQLITE_LOCKED) return State::waiting;
    if (result != SQLITE_DONE) throw StoreError(faultOfSqlite(result), sqlite3_errstr(result));
    m_backup.reset();
    m_to.reset();
    return State::done;
}

void DatabaseCopy::beginWriting() const {
    ::sync_file_range(m_file.get(), 0, 0, SYNC_FILE_RANGE_WRITE);  // a hint: it need not work
}

double DatabaseCopy::fraction() const {
    const int all = m_backup ? sqlite3_backup_pagecount(m_backup.get()) : 0;
    if (all == 0) return m_backup ? 0.0 : 1.0;
    return 1.0 - static_cast<double>(sqlite3_backup_remaining(m_backup.get())) / all;
}

}  // namespace corvel
