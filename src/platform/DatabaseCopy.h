#pragma once

#include "platform/Database.h"
#include "platform/FileDescriptor.h"
#include "platform/Handle.h"

#include <sqlite3.h>

#include <filesystem>

namespace corvel {

/// Copies an open database to a new file, some pages at a step, by SQLite's online backup. Changes
/// that the connection makes meanwhile go into the copy as well: it is of the moment of the last
/// step. The copy is not synced.
class DatabaseCopy {
public:
    /// `waiting`: a transaction is open, so that nothing could be copied now.
    enum class State { working, waiting, done };

    /// Makes the file. Throws StoreError. The database must outlive the copy.
    DatabaseCopy(Database& from, const std::filesystem::path& to);

    /// Throws StoreError: the copy then is of no use.
    State step(int pages);
    /// Lets the disk begin with what was copied so far, and does not wait for it. Otherwise that
    /// gathers in memory, and whoever syncs a file meanwhile waits for much of it.
    void beginWriting() const;
    /// Of the pages, from 0 to 1.
    double fraction() const;

private:
    FileDescriptor m_file;
    Handle<sqlite3, sqlite3_close_v2> m_to;
    Handle<sqlite3_backup, sqlite3_backup_finish> m_backup;
};

}  // namespace corvel
