#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <filesystem>
#include <string>

namespace corvel {

/// SQLite as a program has it that does nothing of its own: prepared statements over SQLite's own
/// file system, with the library's pragmas.
class BareDatabase : public SQLite::Database {
public:
    explicit BareDatabase(const std::filesystem::path& file)
        : SQLite::Database(file.string(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE) {
        exec(
            "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL; PRAGMA foreign_keys=ON;"
            "PRAGMA cache_size=-65536");
    }
};

/// Runs a statement without rows and makes it ready for the next use.
inline void run(SQLite::Statement& statement) {
    statement.exec();
    statement.reset();
}

}  // namespace corvel
