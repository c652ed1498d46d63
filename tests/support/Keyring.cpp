#include "support/Keyring.h"

#include "platform/ScopedConnection.h"
#include "support/MainLoop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace corvel {

namespace {

// The bus is asked again and again: its answer is no event of the main loop.
bool turnAndAskUntil(const std::function<bool()>& isTrue) {
    const ScopedConnection tick = Glib::signal_timeout().connect([] { return true; }, 10);
    return turnUntil(isTrue);
}

}  // namespace

Keyring::Keyring() {
    // Its control socket; nobody else's.
    const auto runtime = std::filesystem::path(std::getenv("HOME")) / "runtime";
    std::filesystem::create_directories(runtime);
    std::filesystem::permissions(runtime, std::filesystem::perms::owner_all);
    setenv("XDG_RUNTIME_DIR", runtime.c_str(), 1);
    const GObjectHandle<GSubprocessLauncher> launcher(g_subprocess_launcher_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE |
                                      G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                      G_SUBPROCESS_FLAGS_STDERR_SILENCE)));
    m_daemon.reset(g_subprocess_launcher_spawn(launcher.get(), nullptr, "gnome-keyring-daemon",
                                               "--foreground", "--unlock", "--components=secrets",
                                               nullptr));
    if (!m_daemon) return;
    GOutputStream* password = g_subprocess_get_stdin_pipe(m_daemon.get());
    g_output_stream_write_all(password, "\n", 1, nullptr, nullptr, nullptr);
    g_output_stream_close(password, nullptr, nullptr);
    EXPECT_TRUE(turnAndAskUntil([this] { return isOnBus(); }));
}

Keyring::~Keyring() {
    stop();
}

void Keyring::stop() {
    if (!m_daemon) return;
    g_subprocess_send_signal(m_daemon.get(), SIGTERM);
    g_subprocess_wait(m_daemon.get(), nullptr, nullptr);
    m_daemon.reset();
    EXPECT_TRUE(turnAndAskUntil([this] { return !isOnBus(); }));
}

bool Keyring::isOnBus() const {
    const GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus) return false;
    using VariantHandle = Handle<GVariant, g_variant_unref>;
    const VariantHandle answer(g_dbus_connection_call_sync(
        bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", "org.freedesktop.secrets"), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    if (!answer) return false;
    gboolean isOwned = FALSE;
    g_variant_get(answer.get(), "(b)", &isOwned);
    return isOwned != FALSE;
}

}  // namespace corvel
