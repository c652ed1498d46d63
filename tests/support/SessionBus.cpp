#include "support/SessionBus.h"

#include "platform/Handle.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace corvel {

namespace {

std::string firstLineOf(GInputStream* stream) {
    const GObjectHandle<GDataInputStream> lines(g_data_input_stream_new(stream));
    const Handle<char, g_free> line(
        g_data_input_stream_read_line(lines.get(), nullptr, nullptr, nullptr));
    return line ? line.get() : "";
}

}  // namespace

class SessionBus::Daemon {
public:
    Daemon() {
        const std::string file = "--config-file=" CORVEL_TEST_DATA "/support/session-bus.conf";
        m_process.reset(g_subprocess_new(
            static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                          G_SUBPROCESS_FLAGS_STDERR_SILENCE),
            nullptr, "dbus-daemon", file.c_str(), "--nofork", "--print-address", nullptr));
        if (m_process) m_address = firstLineOf(g_subprocess_get_stdout_pipe(m_process.get()));
        EXPECT_NE(m_address, "");
        tell();
        m_connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        EXPECT_NE(m_connection, nullptr);
        if (m_connection) g_dbus_connection_set_exit_on_close(m_connection.get(), FALSE);
    }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    ~Daemon() {
        if (!m_process) return;
        g_subprocess_force_exit(m_process.get());
        g_subprocess_wait(m_process.get(), nullptr, nullptr);
    }

    /// To programs that are started from now on.
    void tell() const { setenv("DBUS_SESSION_BUS_ADDRESS", m_address.c_str(), 1); }

private:
    GObjectHandle<GSubprocess> m_process;
    std::string m_address;
    GObjectHandle<GDBusConnection> m_connection;
};

SessionBus::SessionBus() {
    static const Daemon daemon;
    daemon.tell();
}

}  // namespace corvel
