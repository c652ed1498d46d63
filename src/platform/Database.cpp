#include "platform/Database.h"

#include "platform/GatheredLog.h"
#include "platform/MainThread.h"

#include <sqlite3.h>

#include <cstring>

namespace corvel {

StoreFault faultOfSqlite(int code) {
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return StoreFault::locked;
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return StoreFault::corrupt;
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_CANTOPEN:
            return StoreFault::readOnly;
        case SQLITE_FULL:
            return StoreFault::diskFull;
        case SQLITE_CONSTRAINT:
        case SQLITE_MISMATCH:
        case SQLITE_TOOBIG:
        case SQLITE_RANGE:
        case SQLITE_MISUSE:
        case SQLITE_ERROR:
            return StoreFault::invalid;
        default:
            return StoreFault::failed;
    }
}

namespace {

[[noreturn]] void throwStoreError(const SQLite::Exception& error) {
    throw StoreError(faultOfSqlite(error.getErrorCode()), error.what());
}

template <typename Work>
auto translated(Work&& work) {
    try {
        return work();
    } catch (const SQLite::Exception& error) {
        throwStoreError(error);
    }
}

constexpr int kBusyTimeoutMilliseconds = 2000;
// Without locks of its own: all is done on the main thread.
constexpr int kFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;

}  // namespace

Query::Query(Database& database, StatementHandle statement, Idle& home)
    : m_database(&database), m_statement(std::move(statement)), m_home(&home) {}

Query::~Query() {
    if (!m_statement) return;
    sqlite3_reset(raw());
    sqlite3_clear_bindings(raw());
    try {
        m_home->push_back(std::move(m_statement));
    } catch (...) {  // NOLINT(bugprone-empty-catch): the statement is simply not kept
    }
}

void Query::check(int result) const {
    if (result != SQLITE_OK)
        throw StoreError(faultOfSqlite(result), sqlite3_errmsg(m_database->handle()));
}

void Query::bindAt(int position, std::int64_t value) {
    check(sqlite3_bind_int64(raw(), position, value));
}

void Query::bindAt(int position, double value) {
    check(sqlite3_bind_double(raw(), position, value));
}

void Query::bindAt(int position, std::string_view text) {
    // An empty view may have no address, which SQLite would take for NULL.
    const char* data = text.data() != nullptr ? text.data() : "";
    check(sqlite3_bind_text64(raw(), position, data, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Query::bindAt(int position, const Uuid& id) {
    check(sqlite3_bind_blob(raw(), position, id.bytes.data(), static_cast<int>(id.bytes.size()),
                            SQLITE_STATIC));
}

void Query::bindAt(int position, const std::vector<std::uint8_t>& blob) {
    const void* data = blob.empty() ? "" : static_cast<const void*>(blob.data());
    check(sqlite3_bind_blob64(raw(), position, data, blob.size(), SQLITE_STATIC));
}

void Query::bindAt(int position, std::nullptr_t) {
    check(sqlite3_bind_null(raw(), position));
}

bool Query::next() {
    const int result = sqlite3_step(raw());
    if (result == SQLITE_ROW) return true;
    if (result != SQLITE_DONE) check(result);
    return false;
}

int Query::run() {
    while (next()) {
    }
    return sqlite3_changes(m_database->handle());
}

bool Query::isNull(int column) const {
    return sqlite3_column_type(raw(), column) == SQLITE_NULL;
}

std::int64_t Query::integer(int column) const {
    return sqlite3_column_int64(raw(), column);
}

std::string_view Query::text(int column) const {
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(raw(), column));
    if (data == nullptr) return {};
    return {data, static_cast<std::size_t>(sqlite3_column_bytes(raw(), column))};
}

Uuid Query::uuid(int column) const {
    Uuid id;
    const void* data = sqlite3_column_blob(raw(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(raw(), column));
    if (data != nullptr && size == id.bytes.size()) std::memcpy(id.bytes.data(), data, size);
    return id;
}

std::vector<std::uint8_t> Query::blob(int column) const {
    const auto* data = static_cast<const std::uint8_t*>(sqlite3_column_blob(raw(), column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(raw(), column));
    return data == nullptr ? std::vector<std::uint8_t>{}
                           : std::vector<std::uint8_t>(data, data + size);
}

Database::Database(const std::filesystem::path& file) {
    translated([&] {
        m_database = std::make_unique<SQLite::Database>(
            file.string(), kFlags, kBusyTimeoutMilliseconds, gatheredLog::vfsName());
        configure();
    });
}

Database::Database() {
    translated([&] {
        m_database = std::make_unique<SQLite::Database>(":memory:", kFlags);
        configure();
    });
}

void Database::configure() {
    m_database->exec("PRAGMA journal_mode=WAL");
    m_database->exec("PRAGMA synchronous=FULL");
    m_database->exec("PRAGMA foreign_keys=ON");
    // Room for the indexes of a hundred thousand notes: lists read them whole, an import writes
    // them all over.
    m_database->exec("PRAGMA cache_size=-65536");
}

Query Database::query(std::string_view sql) {
    checkMainThread();
    auto& idle = m_idle[sql.data()];
    if (idle.empty()) return {*this, prepare(sql), idle};
    auto statement = std::move(idle.back());
    idle.pop_back();
    return {*this, std::move(statement), idle};
}

StatementHandle Database::prepare(std::string_view sql) {
    sqlite3_stmt* statement = nullptr;
    const int result = sqlite3_prepare_v3(handle(), sql.data(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (result != SQLITE_OK) throw StoreError(faultOfSqlite(result), sqlite3_errmsg(handle()));
    return StatementHandle(statement);
}

void Database::execute(const std::string& sql) {
    checkMainThread();
    translated([&] { m_database->exec(sql); });
}

std::int64_t Database::lastInsertedRow() const {
    return m_database->getLastInsertRowid();
}

bool Database::inTransaction() const {
    return sqlite3_get_autocommit(handle()) == 0;
}

sqlite3* Database::handle() const {
    return m_database->getHandle();
}

ReadTransaction::ReadTransaction(Database& database)
    : m_database(database), m_isOpen(!database.inTransaction()) {
    if (m_isOpen) m_database.query("BEGIN").run();
}

ReadTransaction::~ReadTransaction() {
    if (!m_isOpen || !m_database.inTransaction()) return;
    try {
        m_database.query("COMMIT").run();
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch): nothing was written
    }
}

}  // namespace corvel
