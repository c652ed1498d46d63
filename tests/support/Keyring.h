#pragma once

#include "platform/Handle.h"
#include "support/TemporaryFolder.h"

#include <gio/gio.h>

namespace corvel {

/// A real keyring on the session bus, unlocked, empty, with an empty password. Its files go with
/// it.
class Keyring {
public:
    Keyring();
    Keyring(const Keyring&) = delete;
    Keyring& operator=(const Keyring&) = delete;
    ~Keyring();

    /// Ends it and waits until its name has gone from the bus.
    void stop();
    /// Nobody is here to ask the user: who wants a locked item opened gets a refusal.
    void lock();

private:
    bool isOnBus() const;

    TemporaryFolder m_folder;
    GObjectHandle<GSubprocess> m_daemon;
};

}  // namespace corvel
