#include "app/HelperRoles.h"
#include "platform/Handle.h"
#include "ui/Application.h"

#include <gio/gio.h>
#include <unistd.h>

namespace corvel {
namespace {

// In the same process. The bus must have heard that the name is free, or the program started anew
// would take itself for a second one.
void restart(char** argv) {
    const GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus) g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
    char* const again[] = {argv[0], nullptr};
    execv("/proc/self/exe", again);
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    if (const auto status = corvel::runAsHelper(argc, argv)) return *status;
    auto application = corvel::Application::create();
    const int status = application->run(argc, argv);
    if (application->isToRestart()) {
        application.reset();
        corvel::restart(argv);
    }
    return status;
}
