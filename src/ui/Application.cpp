#include "ui/Application.h"

#include "platform/Log.h"
#include "platform/MainThread.h"
#include "platform/Paths.h"
#include "platform/gtk/SystemAppearance.h"
#include "ui/FatalWindow.h"
#include "ui/FirstFrame.h"
#include "ui/RecoveryToasts.h"
#include "ui/Resources.h"
#include "ui/ToolkitLanguage.h"

#include <adwaita.h>
#include <glib-unix.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kApplicationID = "com.qno.corvel";
/// How long a service without a window waits for the next question; typing a query asks many.
constexpr std::chrono::seconds kIdle{60};
constexpr const char* kThemeVariable = "GTK_THEME";
/// A library that is ready within it needs no window that says so.
constexpr std::chrono::milliseconds kSilentUpgrade{150};

/// The toolkit loads its own style sheet when it starts, and libadwaita then replaces it by one of
/// its own. While this lives an empty one is loaded instead, unless the user asks for a theme.
class EmptyTheme {
public:
    EmptyTheme() : m_isUsers(std::getenv(kThemeVariable) != nullptr) {
        if (!m_isUsers) setenv(kThemeVariable, "Adwaita-empty", 0);
    }
    EmptyTheme(const EmptyTheme&) = delete;
    EmptyTheme& operator=(const EmptyTheme&) = delete;
    ~EmptyTheme() {
        if (!m_isUsers) unsetenv(kThemeVariable);
    }

private:
    bool m_isUsers;
};

}  // namespace

Application::Application() : Gtk::Application(kApplicationID, Flags::HANDLES_OPEN) {}

Application::~Application() = default;

Glib::RefPtr<Application> Application::create() {
    return Glib::make_refptr_for_instance(new Application());
}

void Application::on_startup() {
    m_defaults = std::make_unique<UserDefaults>(paths::preferencesFile());
    m_preferences = std::make_unique<Preferences>(*m_defaults);
    m_texts = std::make_unique<Localisation>(*m_preferences);
    followLanguage();
    const bool isService = (get_flags() & Flags::IS_SERVICE) == Flags::IS_SERVICE;
    {
        const EmptyTheme untilAdwaitaTakesOver;
        if (!isService) m_fonts.emplace(fontScale(m_preferences->uiSize()));
        Gtk::Application::on_startup();
    }
    claimMainThread();
    adw_init();
    registerResources();
    m_actions.emplace(*this, [this](CommandID command) { perform(command); });
    endOnSignals();
    if (isService) {
        set_inactivity_timeout(static_cast<guint>(std::chrono::milliseconds(kIdle).count()));
    }
}

// The toolkit must know before it makes its first text.
void Application::followLanguage() {
    setToolkitLanguage(m_texts->languageCode());
    m_defaults->signalChanged().connect([this](const std::string& key) {
        if (key == "appLanguage") setToolkitLanguage(m_texts->languageCode());
    });
}

void Application::on_activate() {
    withWindow([this] { m_window->window().present(); });
}

void Application::withWindow(std::function<void()> then) {
    if (m_window) return then();
    m_forWindow.push_back(std::move(then));
    if (m_upgrade) return m_upgrade->present();
    onFatalStop(showFatalWindow);  // a service says nothing on the screen
    openLibrary();
}

void Application::openLibrary() {
    if (hasToUpgrade(kSilentUpgrade)) {
        m_upgrade = std::make_unique<UpgradeWindow>(*m_rebuild, *m_texts, [this] {
            openWindow();
            m_upgrade.reset();
        });
        add_window(*m_upgrade);
        m_upgrade->present();
    } else {
        openWindow();
    }
}

// Works at it for some time if there is something to do. True while there is.
bool Application::hasToUpgrade(std::chrono::milliseconds time) {
    auto& context = PersistenceController::shared().viewContext();
    try {
        if (!m_rebuild && !m_session && derivedRows::isRebuildDue(context)) {
            m_rebuild =
                std::make_unique<derivedRows::Rebuild>(context, derivedRows::WordCounts::recount);
        }
        if (m_rebuild && m_rebuild->step(time)) return true;
    } catch (const StoreError& error) {
        fatalStop(std::string("Core Data store failed to load: ") + error.what());
    }
    return false;
}

void Application::on_open(const type_vec_files& files, const Glib::ustring&) {
    FilePaths paths;
    std::vector<std::string> addresses;
    for (const auto& file : files) {
        const auto path = file->get_path();
        if (path.empty()) {
            addresses.push_back(file->get_parse_name());
        } else {
            paths.emplace_back(path);
        }
    }
    withWindow([this, paths, addresses] {
        m_window->window().present();
        m_window->openFiles(paths, addresses);
    });
}

void Application::perform(CommandID command) {
    withWindow([this, command] {
        m_window->window().present();
        m_session->commands.activate(command);
    });
}

// Objects stand on the bus before the name does: whoever starts the program by a question to it
// finds them.
bool Application::dbus_register_vfunc(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                      const Glib::ustring& path) {
    if (!Gtk::Application::dbus_register_vfunc(connection, path)) return false;
    try {
        m_searchProvider = std::make_unique<SearchProvider>(connection, searchActions());
    } catch (const Glib::Error& error) {
        logLine(std::string("Error offering search to the desktop: ") + error.what());
    }
    return true;
}

void Application::dbus_unregister_vfunc(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                                        const Glib::ustring& path) {
    m_searchProvider.reset();
    Gtk::Application::dbus_unregister_vfunc(connection, path);
}

SearchProvider::Actions Application::searchActions() {
    return {.search = [this]() -> DesktopSearch& { return desktopSearch(); },
            .hold = [this] { hold(); },
            .release = [this] { release(); },
            .show = [this](const Uuid& id, const auto&, std::uint32_t time) { showNote(id, time); },
            .searchInside = [this](const auto& terms,
                                   std::uint32_t time) { searchInside(terms, time); }};
}

DesktopSearch& Application::desktopSearch() {
    if (!m_search) m_search = std::make_unique<DesktopSearch>(session().library, session().texts);
    return *m_search;
}

void Application::showNote(const Uuid& id, std::uint32_t time) {
    withWindow([this, id, time] {
        m_window->window().present(time);
        m_session->reveal(id);
        m_window->focusNote();
    });
}

void Application::searchInside(const std::vector<std::string>& terms, std::uint32_t time) {
    withWindow([this, terms, time] {
        m_window->window().present(time);
        m_session->state.searchQuery.set(desktopSearch().queryFor(terms));
        m_session->commands.activate(CommandID::findInAllNotes);
    });
}

// With its window the program ends, however it was started.
void Application::on_window_removed(Gtk::Window* window) {
    const bool isMain = m_window && window == &m_window->window();
    Gtk::Application::on_window_removed(window);
    if (isMain) quit();
}

// A question from the desktop's shell comes without a window: it waits for the upgrade.
Session& Application::session() {
    if (m_session) return *m_session;
    while (hasToUpgrade(kSilentUpgrade)) {
    }
    auto& store = PersistenceController::shared();
    m_themes = std::make_unique<ThemeManager>(*m_defaults, paths::themes(), isSystemDark);
    m_session = std::make_unique<Session>(store, *m_defaults, *m_themes, [this](CommandID command) {
        if (m_window) m_window->perform(command);
    });
    return *m_session;
}

void Application::openWindow() {
    session();
    m_rebuild.reset();
    m_style = std::make_unique<StyleSheet>(m_session->preferences, *m_themes);
    if (m_fonts) m_fonts->use();
    m_window = std::make_unique<MainWindow>(*m_session, *this);
    m_session->start();
    reportFirstFrame(m_window->window());
    startIndexing();
    keepBackups();
    for (const auto& then : std::exchange(m_forWindow, {}))
        then();
}

// A restored library is opened by the program started anew: nothing of the one before is left.
void Application::keepBackups() {
    m_session->backups.signalRestored().connect([this] {
        m_session->finish();
        m_defaults->setBoolean(kLibraryRestored, true);
        m_isToRestart = true;
        quit();
    });
    m_session->backups.start();
}

// Nothing may come before the first frame: the second tick of the window's clock follows it.
void Application::startIndexing() {
    m_feeder = std::make_unique<IndexFeeder>(m_session->library.searchIndex, m_session->palette);
    m_housekeeping = std::make_unique<Housekeeping>(m_session->library);
    m_window->window().add_tick_callback(
        [this, ticks = 0](const Glib::RefPtr<Gdk::FrameClock>&) mutable {
            if (++ticks < 2) return true;
            m_feeder->start();
            m_housekeeping->start();
            return false;
        });
}

// The end of a login session is no reason to lose the last words.
void Application::endOnSignals() {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        g_unix_signal_add(
            signal,
            [](gpointer data) -> gboolean {
                auto* application = static_cast<Application*>(data);
                if (application->m_window) application->m_window->remember();
                if (application->m_session) application->m_session->finish();
                application->quit();
                return G_SOURCE_REMOVE;
            },
            this);
    }
}

void Application::on_shutdown() {
    m_upgrade.reset();
    m_rebuild.reset();
    m_housekeeping.reset();
    m_feeder.reset();
    m_window.reset();
    m_style.reset();
    m_search.reset();
    m_session.reset();
    m_themes.reset();
    Gtk::Application::on_shutdown();
}

}  // namespace corvel
