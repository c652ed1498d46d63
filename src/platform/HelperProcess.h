#pragma once

#include <giomm/cancellable.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// This program, to be run again as its own helper: what it is now, even if another version has
/// been installed meanwhile.
inline constexpr const char* kThisProgram = "/proc/self/exe";

/// What a process of its own is to do, for work that would hold the window up or may never end.
struct HelperTask {
    std::vector<std::string> command;  ///< the program and its arguments
    std::string input;                 ///< for its standard input
    std::optional<std::chrono::milliseconds> limit;
};

struct HelperOutcome {
    /// It could be started, ended in time, and its exit status was 0.
    bool isGood = false;
    std::string output;  ///< of its standard output, also where it failed
};

/// Calls `done` exactly once, on the main loop, never before this function returns. The process is
/// killed at the limit and when `cancellable`, which may be null, is cancelled.
void runHelper(HelperTask task,
               const Glib::RefPtr<Gio::Cancellable>& cancellable,
               std::function<void(HelperOutcome)> done);

}  // namespace corvel
