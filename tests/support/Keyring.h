#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>

namespace corvel {

/// A real keyring on the session bus, unlocked, with an empty password. Its files go to the test's
/// own data folder.
class Keyring {
public:
    Keyring();
    Keyring(const Keyring&) = delete;
    Keyring& operator=(const Keyring&) = delete;
    ~Keyring();

    /// Ends it and waits until its name has gone from the bus.
    void stop();

private:
    bool isOnBus() const;

    GObjectHandle<GSubprocess> m_daemon;
};

}  // namespace corvel
