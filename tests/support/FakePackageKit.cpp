#include "support/FakePackageKit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string_view>

namespace corvel {

namespace {

using NodeHandle = Handle<GDBusNodeInfo, g_dbus_node_info_unref>;

constexpr const char* kName = "org.freedesktop.PackageKit";
constexpr const char* kInterfaces = R"(<node>
<interface name="org.freedesktop.PackageKit">
  <method name="CreateTransaction"><arg type="o" direction="out"/></method></interface>
<interface name="org.freedesktop.PackageKit.Transaction">
  <method name="Resolve"><arg type="t" direction="in"/><arg type="as" direction="in"/></method>
  <method name="GetUpdates"><arg type="t" direction="in"/></method></interface></node>)";

}  // namespace

FakePackageKit::FakePackageKit() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address, 1);
    m_bus.reset(g_dbus_connection_new_for_address_sync(
        address,
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    const auto called = [](GDBusConnection*, const char*, const char*, const char*,
                           const char* method, GVariant* arguments,
                           GDBusMethodInvocation* invocation, gpointer data) {
        static_cast<FakePackageKit*>(data)->answer(method, arguments, invocation);
    };
    static const GDBusInterfaceVTable kTable{called, nullptr, nullptr, {}};
    const NodeHandle node(g_dbus_node_info_new_for_xml(kInterfaces, nullptr));
    const auto offer = [&](const char* path, int interface) {
        m_objects.push_back(g_dbus_connection_register_object(
            m_bus.get(), path, node->interfaces[interface], &kTable, this, nullptr, nullptr));
    };
    offer("/org/freedesktop/PackageKit", 0);
    offer("/1", 1);
    offer("/2", 1);
    callBus("RequestName", g_variant_new("(su)", kName, 0U));
}

FakePackageKit::~FakePackageKit() {
    for (const auto id : m_objects)
        g_dbus_connection_unregister_object(m_bus.get(), id);
    g_dbus_connection_close_sync(m_bus.get(), nullptr, nullptr);
}

void FakePackageKit::vanish() {
    callBus("ReleaseName", g_variant_new("(s)", kName));
}

void FakePackageKit::callBus(const char* method, GVariant* arguments) {
    const Handle<GVariant, g_variant_unref> done(g_dbus_connection_call_sync(
        m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    EXPECT_NE(done, nullptr);
}

void FakePackageKit::answer(const char* method,
                            GVariant* arguments,
                            GDBusMethodInvocation* invocation) {
    if (std::string_view(method) == "CreateTransaction") {
        const auto path = "/" + std::to_string(1 + m_transactions++ % 2);
        return g_dbus_method_invocation_return_value(invocation,
                                                     g_variant_new("(o)", path.c_str()));
    }
    const bool isResolve = std::string_view(method) == "Resolve";
    std::string question = method;
    if (isResolve) {
        const char* name = nullptr;
        const Handle<GVariant, g_variant_unref> names(g_variant_get_child_value(arguments, 1));
        g_variant_get_child(names.get(), 0, "&s", &name);
        question += std::string(" ") + name;
    }
    asked.push_back(question);
    const auto& given = isResolve ? installed : updates;
    if (given.isRefused) {
        return g_dbus_method_invocation_return_dbus_error(
            invocation, "org.freedesktop.PackageKit.Transaction.RefusedByPolicy", "not for you");
    }
    const std::string path = g_dbus_method_invocation_get_object_path(invocation);
    g_dbus_method_invocation_return_value(invocation, nullptr);
    if (given.isSilent) return;
    for (const auto& id : given.packages)
        emit(path, "Package", g_variant_new("(uss)", 5U, id.c_str(), "Notes"));
    if (!given.error.empty()) {
        emit(path, "ErrorCode", g_variant_new("(us)", 2U, given.error.c_str()));
    }
    emit(path, "Finished", g_variant_new("(uu)", given.exit, 10U));
}

void FakePackageKit::emit(const std::string& path, const char* signal, GVariant* arguments) {
    g_dbus_connection_emit_signal(m_bus.get(), nullptr, path.c_str(),
                                  "org.freedesktop.PackageKit.Transaction", signal, arguments,
                                  nullptr);
}

}  // namespace corvel
