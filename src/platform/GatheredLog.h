#pragma once

namespace corvel {

/// A file system for SQLite (a VFS, https://sqlite.org/vfs.html) that is the system's own but for
/// one thing: what is written to the write-ahead log is gathered in memory and goes out in one
/// piece. SQLite writes a log in pieces of 24 and 4096 bytes, and each costs a call of the system.
///
/// What is gathered, one piece of the log, is read and written over in memory, and goes out before
/// the log is synced, measured, cut or closed. With `synchronous=FULL` a commit ends with a sync,
/// so it is as durable as ever, and whoever has the library open beside this program sees it as
/// soon as ever. With less than FULL the last commit may wait in memory: not to be used so. What
/// cannot be written is reported by the call that wanted it out, in a commit by its sync, and is
/// kept for the next one.
namespace gatheredLog {

/// The name to open a database with; registers the file system at the first call. Throws
/// StoreError.
const char* vfsName();

}  // namespace gatheredLog
}  // namespace corvel
