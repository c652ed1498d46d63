#include "library/Library.h"
#include "model/PersistenceController.h"
#include "platform/Handle.h"
#include "platform/Paths.h"
#include "platform/ScopedConnection.h"
#include "platform/UserDefaults.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/TestLibrary.h"

#include <gio/gio.h>
#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Strings = std::vector<std::string>;
using Value = Handle<GVariant, g_variant_unref>;

constexpr const char* kName = "com.qno.corvel";
constexpr const char* kObject = "/com/qno/corvel";
constexpr const char* kProvider = "/com/qno/corvel/SearchProvider";
constexpr const char* kProviderInterface = "org.gnome.Shell.SearchProvider2";
constexpr const char* kApplication = "org.freedesktop.Application";
constexpr int kPatience = 60'000;  // milliseconds; a window is made meanwhile

GVariant* array(const Strings& strings) {
    std::vector<const char*> pointers;
    for (const auto& string : strings)
        pointers.push_back(string.c_str());
    return g_variant_new_strv(pointers.data(), static_cast<gssize>(pointers.size()));
}

GVariant* noData() {
    return g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0);
}

/// The real program in a process of its own, called over the session bus as a desktop does.
class DesktopCalls : public testing::Test {
protected:
    static GObjectHandle<GSubprocess> start(const Strings& arguments) {
        std::vector<const char*> all{CORVEL_PROGRAM};
        for (const auto& argument : arguments)
            all.push_back(argument.c_str());
        all.push_back(nullptr);
        return GObjectHandle<GSubprocess>(
            g_subprocess_newv(all.data(), G_SUBPROCESS_FLAGS_STDOUT_SILENCE, nullptr));
    }

    DesktopCalls() : m_bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)) {
        std::filesystem::remove_all(paths::applicationSupport());
        PersistenceController controller(PersistenceController::Storage::onDisk);
        Library library(controller);
        for (const auto* text : {"# Łódź\n\n**murale** i podwórka", "# Kraków\n\nmurale"})
            library.notes.create(noteFrom(text));
        auto trashed = noteFrom("# Trashed\n\nmurale");
        library.notes.create(trashed);
        library.notes.moveToTrash(trashed.id);
        UserDefaults(paths::preferencesFile()).setString("openExternalFiles", "import");
    }

    void SetUp() override {
        ASSERT_NE(m_bus, nullptr);
        m_service = start({"--gapplication-service"});
        ASSERT_NE(m_service, nullptr);
        ASSERT_TRUE(becomes([this] { return hasName(); }));
    }

    ~DesktopCalls() override {
        if (!m_service) return;
        g_subprocess_send_signal(m_service.get(), SIGTERM);
        g_subprocess_wait(m_service.get(), nullptr, nullptr);
        EXPECT_TRUE(g_subprocess_get_successful(m_service.get()));
    }

    Value call(const char* name,
               const char* path,
               const char* interface,
               const char* method,
               GVariant* parameters) const {
        GError* error = nullptr;
        Value answer(g_dbus_connection_call_sync(
            m_bus.get(), name, path, interface, method, parameters, nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, kPatience, nullptr, &error));
        EXPECT_EQ(error, nullptr) << method << ": " << error->message;
        g_clear_error(&error);
        return answer;
    }
    bool hasName() const {
        const auto answer =
            call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                 "NameHasOwner", g_variant_new("(s)", kName));
        gboolean has = FALSE;
        g_variant_get(answer.get(), "(b)", &has);
        return has != FALSE;
    }
    Value ask(const char* method, GVariant* parameters) const {
        return call(kName, kProvider, kProviderInterface, method, parameters);
    }
    Value tell(const char* method, GVariant* parameters) const {
        return call(kName, kObject, kApplication, method, parameters);
    }
    Strings find(const Strings& terms) const {
        return stringsIn(ask("GetInitialResultSet", g_variant_new("(@as)", array(terms))));
    }
    static Strings stringsIn(const Value& answer) {
        const Value list(g_variant_get_child_value(answer.get(), 0));
        const Handle<const char*, g_free> strings(g_variant_get_strv(list.get(), nullptr));
        Strings found;
        for (const char* const* each = strings.get(); *each != nullptr; ++each)
            found.emplace_back(*each);
        return found;
    }
    /// Windows of the program that is on the bus.
    std::string windows() const {
        const auto answer = call(kName, "/com/qno/corvel", "org.freedesktop.DBus.Introspectable",
                                 "Introspect", nullptr);
        const char* xml = nullptr;
        g_variant_get(answer.get(), "(&s)", &xml);
        return xml;
    }
    /// Another process cannot wake this one's loop: it is asked again and again.
    static bool becomes(const std::function<bool()>& condition) {
        const ScopedConnection again(Glib::signal_timeout().connect([] { return true; }, 20));
        return turnUntil(condition);
    }
    bool becomesFound(const Strings& terms) const {
        return becomes([&] { return !find(terms).empty(); });
    }

    TemporaryFolder m_folder;
    GObjectHandle<GDBusConnection> m_bus;
    GObjectHandle<GSubprocess> m_service;
};

TEST_F(DesktopCalls, SearchIsAnsweredWithoutAWindow) {
    const auto all = find({"MURAL"});
    EXPECT_THAT(all, SizeIs(2));  // not what is in the trash
    const auto one = stringsIn(ask(
        "GetSubsearchResultSet", g_variant_new("(@as@as)", array(all), array({"MURAL", "lodz"}))));
    ASSERT_THAT(one, SizeIs(1));
    EXPECT_THAT(find({"", "\u0301"}), IsEmpty());

    const auto answer = ask("GetResultMetas", g_variant_new("(@as)", array({"none", one.front()})));
    const Value metas(g_variant_get_child_value(answer.get(), 0));
    ASSERT_EQ(g_variant_n_children(metas.get()), 1U);
    const Value meta(g_variant_get_child_value(metas.get(), 0));
    const auto field = [&](const char* key) -> std::string {
        const char* text = nullptr;
        return g_variant_lookup(meta.get(), key, "&s", &text) ? text : "";
    };
    EXPECT_EQ(field("id"), one.front());
    EXPECT_EQ(field("name"), "Łódź");
    EXPECT_EQ(field("description"), "murale i podwórka");
    EXPECT_EQ(field("gicon"), "com.qno.corvel");
    EXPECT_EQ(windows().find("window"), std::string::npos);
}

TEST_F(DesktopCalls, ResultsAndActionsOpenTheWindow) {
    const auto found = find({"kraków"});
    ASSERT_THAT(found, SizeIs(1));
    ask("ActivateResult", g_variant_new("(s@asu)", found.front().c_str(), array({"kraków"}), 0U));
    EXPECT_THAT(windows(), HasSubstr("window"));
    ask("ActivateResult", g_variant_new("(s@asu)", "'; --", array({"murale"}), 4294967295U));
    ask("LaunchSearch", g_variant_new("(@asu)", array({"murale", "x"}), 0U));
    const auto act = [&](const char* action) {
        tell("ActivateAction",
             g_variant_new("(s@av@a{sv})", action,
                           g_variant_new_array(G_VARIANT_TYPE_VARIANT, nullptr, 0), noData()));
    };
    act("search");
    act("new-note");
    EXPECT_THAT(find({"kraków"}), ElementsAre(found.front()));  // still there, and answers
}

TEST_F(DesktopCalls, FilesAreOpenedInTheProgramThatRuns) {
    const auto byBus = m_folder.write("one file.md", "# Pierwszy\n\nptakipierwsze");
    const Handle<char, g_free> uri(g_filename_to_uri(byBus.c_str(), nullptr, nullptr));
    tell("Open", g_variant_new("(@as@a{sv})", array({uri.get(), "sftp://nowhere/x.md"}), noData()));
    EXPECT_TRUE(becomesFound({"ptakipierwsze"}));

    const auto byStart = m_folder.write("two.md", "# Drugi\n\nptakidrugie");
    const auto second = start({byStart.string()});
    ASSERT_TRUE(g_subprocess_wait(second.get(), nullptr, nullptr));
    EXPECT_TRUE(g_subprocess_get_successful(second.get()));
    EXPECT_TRUE(becomesFound({"ptakidrugie"}));
}

}  // namespace
}  // namespace corvel
