#pragma once

#include "platform/HelperProcess.h"

#include <giomm/cancellable.h>

#include <cstddef>
#include <filesystem>
#include <functional>

namespace corvel {

inline constexpr const char* kBackupCheckOption = "--check-backup";

/// What a copy of the store turned out to be. `unreadable`: it cannot be opened; `newer`: a later
/// version of the program wrote it.
struct BackupVerdict {
    enum class Kind { good, damaged, newer, unreadable };
    Kind kind = Kind::unreadable;
    int version = 0;
    std::size_t notes = 0;
};

/// Looks through a whole copy of the store, which takes seconds, and brings it to the disk. The
/// file is not changed.
BackupVerdict checkBackup(const std::filesystem::path& store);

/// The program as a helper process: checks the file and writes the verdict to standard output.
/// Returns the exit status.
int runBackupCheck(const char* store);

/// Has a helper process check the file, so that nothing waits for it.
class BackupChecker {
public:
    using Done = std::function<void(const BackupVerdict& verdict)>;

    /// The helper is `executable`, by default this program.
    explicit BackupChecker(std::filesystem::path executable = kThisProgram)
        : m_executable(std::move(executable)) {}

    /// Calls `done` once, on the main loop, never before this function returns; not at all once
    /// `cancellable` is cancelled.
    void check(const std::filesystem::path& store,
               const Glib::RefPtr<Gio::Cancellable>& cancellable,
               Done done) const;

private:
    std::filesystem::path m_executable;
};

}  // namespace corvel
