#pragma once

#include <string>

namespace corvel {

/// A session bus of the test program's own, with nothing on it that a test did not put there and
/// nothing it could start. All tests of a process share it: GLib keeps one connection a process
/// for as long as anybody holds it, and libraries do.
class SessionBus {
public:
    SessionBus();

private:
    class Daemon;
};

}  // namespace corvel
