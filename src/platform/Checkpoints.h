#pragma once

#include "platform/Database.h"

namespace corvel {

/// While it lives, no commit copies the write-ahead log into the database file; its owner does it,
/// in a moment of its own. For many commits in a row.
class Checkpoints {
public:
    explicit Checkpoints(Database& database);  // must outlive this
    Checkpoints(const Checkpoints&) = delete;
    Checkpoints& operator=(const Checkpoints&) = delete;
    ~Checkpoints();

    /// The log has as many pages as SQLite would let it have.
    bool isDue() const;
    /// Copies what can be copied. That it fails is no error: the log stays, and is read from.
    void run();

private:
    Database& m_database;
    int m_pages = 0;
};

}  // namespace corvel
