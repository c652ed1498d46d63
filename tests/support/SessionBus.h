#pragma once

#include "platform/Handle.h"
#include "support/TemporaryFolder.h"

#include <gio/gio.h>

namespace corvel {

/// A session bus of a test's own, with nothing on it and nothing it could start. One a process:
/// GLib keeps its connection.
class SessionBus {
public:
    SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;
    ~SessionBus();

private:
    TemporaryFolder m_folder;
    GObjectHandle<GSubprocess> m_daemon;
};

}  // namespace corvel
