#include "support/SessionBus.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace corvel {

namespace {

constexpr const char* kConfiguration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/>
<allow eavesdrop="true"/><allow own="*"/></policy></busconfig>)";

std::string firstLineOf(GInputStream* stream) {
    const GObjectHandle<GDataInputStream> lines(g_data_input_stream_new(stream));
    const Handle<char, g_free> line(
        g_data_input_stream_read_line(lines.get(), nullptr, nullptr, nullptr));
    return line ? line.get() : "";
}

}  // namespace

SessionBus::SessionBus() {
    const auto file = "--config-file=" + m_folder.write("bus.conf", kConfiguration).string();
    m_daemon.reset(g_subprocess_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                      G_SUBPROCESS_FLAGS_STDERR_SILENCE),
        nullptr, "dbus-daemon", file.c_str(), "--nofork", "--print-address", nullptr));
    const auto address =
        m_daemon ? firstLineOf(g_subprocess_get_stdout_pipe(m_daemon.get())) : std::string();
    EXPECT_NE(address, "");
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    const GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    EXPECT_NE(bus, nullptr);
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
}

SessionBus::~SessionBus() {
    if (!m_daemon) return;
    g_subprocess_force_exit(m_daemon.get());
    g_subprocess_wait(m_daemon.get(), nullptr, nullptr);
}

}  // namespace corvel
