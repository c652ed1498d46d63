#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>
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

struct HelperOutcome {
    /// It could be started, ended in time, and its exit status was 0.
    bool isGood = false;
    std::string output;  ///< of its standard output, also where it failed
};

/// A process of its own, for work that would hold the window up or may never end. It starts at
/// once and waits for its input; it is killed if it goes before it got that.
class HelperProcess {
public:
    using Done = std::function<void(HelperOutcome)>;
    using Limit = std::optional<std::chrono::milliseconds>;

    /// `command` is the program and its arguments. What cannot be started fails later.
    explicit HelperProcess(const std::vector<std::string>& command);
    HelperProcess(HelperProcess&&) = default;
    HelperProcess& operator=(HelperProcess&&) = delete;
    ~HelperProcess();

    /// Gives it all its standard input, once; from then on it lives without this object. Calls
    /// `done` exactly once, on the main loop, never before this function returns. The process is
    /// killed at the limit and when `cancellable`, which may be null, is cancelled.
    void work(std::string input,
              const Glib::RefPtr<Gio::Cancellable>& cancellable,
              Done done,
              Limit limit = {});

private:
    GObjectHandle<GSubprocess> m_process;  // none: not started, or left alone
};

}  // namespace corvel
