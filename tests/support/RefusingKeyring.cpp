#include "support/RefusingKeyring.h"

#include <gtest/gtest.h>

#include <string_view>

namespace corvel {

namespace {

constexpr const char* kName = "org.freedesktop.secrets";
constexpr const char* kService = "/org/freedesktop/secrets";
constexpr const char* kDefault = "/org/freedesktop/secrets/aliases/default";
constexpr const char* kItem = "/org/freedesktop/secrets/collection/login/1";
constexpr const char* kPrompt = "/org/freedesktop/secrets/prompt/1";

// In the order of the objects.
constexpr const char* kInterfaces = R"xml(<node>
<interface name="org.freedesktop.Secret.Service">
  <method name="OpenSession"><arg type="s" direction="in"/><arg type="v" direction="in"/>
    <arg type="v" direction="out"/><arg type="o" direction="out"/></method>
  <method name="SearchItems"><arg type="a{ss}" direction="in"/>
    <arg type="ao" direction="out"/><arg type="ao" direction="out"/></method>
  <method name="Unlock"><arg type="ao" direction="in"/>
    <arg type="ao" direction="out"/><arg type="o" direction="out"/></method>
  <property name="Collections" type="ao" access="read"/>
</interface>
<interface name="org.freedesktop.Secret.Collection">
  <method name="CreateItem"><arg type="a{sv}" direction="in"/><arg type="(oayays)" direction="in"/>
    <arg type="b" direction="in"/><arg type="o" direction="out"/><arg type="o" direction="out"/></method>
  <property name="Locked" type="b" access="read"/>
</interface>
<interface name="org.freedesktop.Secret.Item">
  <method name="Delete"><arg type="o" direction="out"/></method>
  <property name="Locked" type="b" access="read"/>
</interface>
<interface name="org.freedesktop.Secret.Prompt">
  <method name="Prompt"><arg type="s" direction="in"/></method>
  <signal name="Completed"><arg type="b"/><arg type="v"/></signal>
</interface></node>)xml";

}  // namespace

RefusingKeyring::RefusingKeyring()
    : m_bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))
    , m_info(g_dbus_node_info_new_for_xml(kInterfaces, nullptr)) {
    if (!m_bus || !m_info) {
        ADD_FAILURE() << "no session bus";
        return;
    }
    publish(kService, m_info->interfaces[0]);
    publish(kDefault, m_info->interfaces[1]);
    publish(kItem, m_info->interfaces[2]);
    publish(kPrompt, m_info->interfaces[3]);
    constexpr guint kDoNotQueue = 4;
    const Handle<GVariant, g_variant_unref> answer(g_dbus_connection_call_sync(
        m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", kName, kDoNotQueue), nullptr, G_DBUS_CALL_FLAGS_NONE,
        -1, nullptr, nullptr));
    EXPECT_NE(answer, nullptr);
}

RefusingKeyring::~RefusingKeyring() {
    const Handle<GVariant, g_variant_unref> answer(g_dbus_connection_call_sync(
        m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "ReleaseName", g_variant_new("(s)", kName), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
        nullptr));
    for (const guint object : m_objects)
        g_dbus_connection_unregister_object(m_bus.get(), object);
}

void RefusingKeyring::publish(const char* path, GDBusInterfaceInfo* interface) {
    static const GDBusInterfaceVTable kCalls{called, property, nullptr, {}};
    m_objects.push_back(g_dbus_connection_register_object(m_bus.get(), path, interface, &kCalls,
                                                          this, nullptr, nullptr));
    EXPECT_NE(m_objects.back(), 0U) << path;
}

void RefusingKeyring::refuse(const char* prompt) {
    ++m_refusals;
    g_dbus_connection_emit_signal(m_bus.get(), nullptr, prompt, "org.freedesktop.Secret.Prompt",
                                  "Completed", g_variant_new_parsed("(true, <@ao []>)"), nullptr);
}

void RefusingKeyring::called(GDBusConnection*,
                             const char*,
                             const char* path,
                             const char*,
                             const char* method,
                             GVariant* arguments,
                             GDBusMethodInvocation* invocation,
                             gpointer self) {
    auto* keyring = static_cast<RefusingKeyring*>(self);
    keyring->answer(method, arguments, invocation);
    if (std::string_view(method) == "Prompt") keyring->refuse(path);
}

void RefusingKeyring::answer(const char* method,
                             GVariant* arguments,
                             GDBusMethodInvocation* invocation) {
    const std::string_view name = method;
    const auto say = [invocation](GVariant* values) {
        g_dbus_method_invocation_return_value(invocation, values);
    };
    const auto refuseWith = [invocation](const char* error) {
        g_dbus_method_invocation_return_dbus_error(invocation, error, "refused");
    };
    if (name == "OpenSession") {
        const char* algorithm = nullptr;
        g_variant_get(arguments, "(&s@v)", &algorithm, nullptr);
        if (std::string_view(algorithm) != "plain") {
            return refuseWith("org.freedesktop.DBus.Error.NotSupported");
        }
        say(g_variant_new_parsed("(<''>, %o)", "/org/freedesktop/secrets/session/1"));
    } else if (name == "SearchItems") {
        say(g_variant_new_parsed("(@ao [], [%o])", kItem));
    } else if (name == "Unlock") {
        say(g_variant_new_parsed("(@ao [], %o)", kPrompt));
    } else if (name == "CreateItem") {
        refuseWith("org.freedesktop.Secret.Error.IsLocked");
    } else if (name == "Delete") {
        say(g_variant_new("(o)", kPrompt));
    } else {
        say(nullptr);
    }
}

GVariant* RefusingKeyring::property(
    GDBusConnection*, const char*, const char*, const char*, const char* name, GError**, gpointer) {
    if (std::string_view(name) == "Locked") return g_variant_new_boolean(TRUE);
    return g_variant_new_parsed("[%o]", kDefault);
}

}  // namespace corvel
