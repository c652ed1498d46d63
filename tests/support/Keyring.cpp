#include "support/Keyring.h"

#include "platform/ScopedConnection.h"
#include "support/MainLoop.h"

#include <glibmm/main.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace corvel {

namespace {

using VariantHandle = Handle<GVariant, g_variant_unref>;

/// Null when it fails.
VariantHandle call(const char* name,
                   const char* path,
                   const char* interface,
                   const char* method,
                   GVariant* arguments) {
    const GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (!bus) return nullptr;
    return VariantHandle(g_dbus_connection_call_sync(bus.get(), name, path, interface, method,
                                                     arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                                                     nullptr, nullptr));
}

// The bus is asked again and again: its answer is no event of the main loop.
bool turnAndAskUntil(const std::function<bool()>& isTrue) {
    const ScopedConnection tick = Glib::signal_timeout().connect([] { return true; }, 10);
    return turnUntil(isTrue);
}

}  // namespace

Keyring::Keyring() {
    const GObjectHandle<GSubprocessLauncher> launcher(g_subprocess_launcher_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE |
                                      G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                      G_SUBPROCESS_FLAGS_STDERR_SILENCE)));
    for (const char* variable : {"XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
        const auto folder = m_folder.path() / variable;
        std::filesystem::create_directories(folder);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
        g_subprocess_launcher_setenv(launcher.get(), variable, folder.c_str(), TRUE);
    }
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

void Keyring::lock() {
    constexpr const char* kName = "org.freedesktop.secrets";
    const auto* paths = "(@ao ['/org/freedesktop/secrets/aliases/default'],)";
    EXPECT_TRUE(call(kName, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service", "Lock",
                     g_variant_new_parsed(paths)));
}

bool Keyring::isOnBus() const {
    const auto answer =
        call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
             "NameHasOwner", g_variant_new("(s)", "org.freedesktop.secrets"));
    if (!answer) return false;
    gboolean isOwned = FALSE;
    g_variant_get(answer.get(), "(b)", &isOwned);
    return isOwned != FALSE;
}

}  // namespace corvel
