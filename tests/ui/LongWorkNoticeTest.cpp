#include "platform/Handle.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "ui/LongWorkNotice.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/application.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace corvel {
namespace {

using namespace std::chrono_literals;

constexpr const char* kInterface = R"(<node><interface name="org.freedesktop.Notifications">
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/>
<arg type="u" direction="out"/></method></interface></node>)";

/// A desktop's notification service on the bus of the tests, that writes down what it is told.
class Notifications {
public:
    struct Shown {
        std::string title;
        std::string body;
        std::vector<std::string> actions;
    };

    Notifications()
        : m_bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))
        , m_node(g_dbus_node_info_new_for_xml(kInterface, nullptr)) {
        static constexpr GDBusInterfaceVTable kTable{called, nullptr, nullptr, {}};
        m_object = g_dbus_connection_register_object(m_bus.get(), "/org/freedesktop/Notifications",
                                                     m_node->interfaces[0], &kTable, this, nullptr,
                                                     nullptr);
        m_name = g_bus_own_name_on_connection(
            m_bus.get(), "org.freedesktop.Notifications", G_BUS_NAME_OWNER_FLAGS_NONE,
            [](GDBusConnection*, const char*, gpointer self) {
                static_cast<Notifications*>(self)->m_isThere = true;
            },
            nullptr, this, nullptr);
        EXPECT_TRUE(turnUntil([this] { return m_isThere; }));
    }
    Notifications(const Notifications&) = delete;
    Notifications& operator=(const Notifications&) = delete;
    ~Notifications() {
        g_bus_unown_name(m_name);
        g_dbus_connection_unregister_object(m_bus.get(), m_object);
    }

    std::vector<Shown> shown;

private:
    static void called(GDBusConnection*,
                       const char*,
                       const char*,
                       const char*,
                       const char*,
                       GVariant* parameters,
                       GDBusMethodInvocation* invocation,
                       gpointer self) {
        const char* title = nullptr;
        const char* body = nullptr;
        const char** actions = nullptr;
        g_variant_get(parameters, "(&su&s&s&s^a&s@a{sv}i)", nullptr, nullptr, nullptr, &title,
                      &body, &actions, nullptr, nullptr);
        Shown what{title, body, {}};
        for (const char** each = actions; *each != nullptr; ++each)
            what.actions.emplace_back(*each);
        g_free(static_cast<void*>(actions));
        static_cast<Notifications*>(self)->shown.push_back(std::move(what));
        g_dbus_method_invocation_return_value(invocation, g_variant_new("(u)", 1U));
    }

    GObjectHandle<GDBusConnection> m_bus;
    Handle<GDBusNodeInfo, g_dbus_node_info_unref> m_node;
    guint m_object = 0;
    guint m_name = 0;
    bool m_isThere = false;
};

TEST(LongWorkNotice, TellsTheDesktopOfLongWorkAlone) {
    gtk_init();
    const auto application =
        Gtk::Application::create("com.qno.corvel.notice", Gio::Application::Flags::NON_UNIQUE);
    application->register_application();
    const TemporaryFolder folder;
    UserDefaults defaults(folder.path() / "preferences");
    const Preferences preferences(defaults);
    const Localisation texts(preferences);
    Notifications desktop;

    LongWorkNotice notice(texts);
    notice.ended("short", "not worth a word");
    notice.startedBefore(LongWorkNotice::kLong + 1s);
    notice.ended("Eksport zakończony", "3 notatki", folder.path() / "a ż.md");
    ASSERT_TRUE(turnUntil([&] { return !desktop.shown.empty(); }));
    ASSERT_EQ(desktop.shown.size(), 1U);
    EXPECT_EQ(desktop.shown[0].title, "Eksport zakończony");
    EXPECT_EQ(desktop.shown[0].body, "3 notatki");
    const auto& actions = desktop.shown[0].actions;
    EXPECT_NE(std::ranges::find(actions, "Pokaż w folderze"), actions.end());
}

}  // namespace
}  // namespace corvel
