#pragma once

#include "platform/Date.h"
#include "platform/Handle.h"
#include "platform/StoreError.h"
#include "platform/Uuid.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvel {

class Database;

/// What an error code of SQLite means.
StoreFault faultOfSqlite(int code);

/// A prepared statement. Rows are read through SQLite's own functions: a list of a hundred thousand
/// rows is read in one go.
using StatementHandle = Handle<sqlite3_stmt, sqlite3_finalize>;

/// One use of a prepared statement. Resetting happens at destruction, so a query must not outlive
/// the scope that reads its rows. Parameters and columns count from 1 and from 0, as in SQLite.
/// Every member throws StoreError.
class Query {
public:
    Query(Query&&) noexcept = default;
    Query& operator=(Query&&) = delete;
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;
    ~Query();

    /// Binds `values` to the parameters in order; returns itself to allow chaining.
    template <typename... Values>
    Query& bind(const Values&... values) {
        int position = 0;
        (bindAt(++position, values), ...);
        return *this;
    }

    void bindAt(int position, std::int64_t value);
    void bindAt(int position, int value) { bindAt(position, std::int64_t{value}); }
    void bindAt(int position, bool value) { bindAt(position, std::int64_t{value}); }
    void bindAt(int position, double value);
    void bindAt(int position, Date value) { bindAt(position, value.microseconds); }
    /// Text and blobs are bound without a copy: they must live until the last step.
    void bindAt(int position, std::string_view text);
    void bindAt(int position, const std::string& text) { bindAt(position, std::string_view(text)); }
    void bindAt(int position, const char* text) { bindAt(position, std::string_view(text)); }
    void bindAt(int position, const Uuid& id);
    void bindAt(int position, const std::vector<std::uint8_t>& blob);
    void bindAt(int position, std::nullptr_t);
    template <typename T>
    void bindAt(int position, const std::optional<T>& value) {
        if (value) {
            bindAt(position, *value);
        } else {
            bindAt(position, nullptr);
        }
    }

    /// Steps to the next row; false when there is none.
    bool next();
    /// Runs a statement that gives no rows and returns how many rows it changed.
    int run();

    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    bool boolean(int column) const { return integer(column) != 0; }
    Date date(int column) const { return {integer(column)}; }
    /// The view holds until the next step.
    std::string_view text(int column) const;
    std::string string(int column) const { return std::string(text(column)); }
    /// A value of another length than 16 bytes gives the zero identifier.
    Uuid uuid(int column) const;
    std::vector<std::uint8_t> blob(int column) const;

private:
    friend class Database;
    using Idle = std::vector<StatementHandle>;
    Query(Database& database, StatementHandle statement, Idle& home);

    sqlite3_stmt* raw() const { return m_statement.get(); }
    void check(int result) const;

    Database* m_database;
    StatementHandle m_statement;
    Idle* m_home;  ///< where the statement waits for its next use
};

/// One SQLite connection and its prepared statements.
class Database {
public:
    /// Opens or creates the file: WAL, synchronous=FULL, foreign keys on. Throws StoreError.
    explicit Database(const std::filesystem::path& file);
    /// A private database in memory.
    Database();

    /// `sql` must outlive the database and never change: statements are kept for the next use by
    /// the address of their text.
    Query query(std::string_view sql);
    /// Runs one or more statements without parameters.
    void execute(const std::string& sql);

    std::int64_t lastInsertedRow() const;
    /// True while a transaction is open; SQLite ends one by itself after some errors.
    bool inTransaction() const;

    sqlite3* handle() const;

private:
    friend class Query;
    void configure();
    StatementHandle prepare(std::string_view sql);

    std::unique_ptr<SQLite::Database> m_database;
    std::unordered_map<const char*, std::vector<StatementHandle>> m_idle;
};

/// Queries while it lives read in one transaction, which saves each the locks of its own. Nothing
/// may be written meanwhile.
class ReadTransaction {
public:
    /// Throws StoreError. Does nothing inside a transaction that is open already.
    explicit ReadTransaction(Database& database);
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;
    ~ReadTransaction();

private:
    Database& m_database;
    bool m_isOpen;
};

}  // namespace corvel
