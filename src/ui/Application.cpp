#include "ui/Application.h"

#include "platform/Log.h"
#include "platform/MainThread.h"
#include "platform/Paths.h"
#include "platform/gtk/SystemAppearance.h"
#include "ui/FatalWindow.h"
#include "ui/FirstFrame.h"
#include "ui/Resources.h"

#include <adwaita.h>
#include <glib-unix.h>

#include <csignal>
#include <cstdlib>

namespace corvel {

namespace {

constexpr const char* kApplicationID = "com.qno.corvel";
constexpr const char* kThemeVariable = "GTK_THEME";

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

Application::Application() : Gtk::Application(kApplicationID) {}

Application::~Application() = default;

Glib::RefPtr<Application> Application::create() {
    return Glib::make_refptr_for_instance(new Application());
}

void Application::on_startup() {
    {
        const EmptyTheme untilAdwaitaTakesOver;
        Gtk::Application::on_startup();
    }
    claimMainThread();
    adw_init();
    registerResources();
    onFatalStop(showFatalWindow);
    endOnSignals();
}

void Application::on_activate() {
    if (!m_window) openWindow();
    m_window->window().present();
}

void Application::openWindow() {
    auto& store = PersistenceController::shared();
    m_defaults = std::make_unique<UserDefaults>(paths::preferencesFile());
    m_themes = std::make_unique<ThemeManager>(*m_defaults, paths::themes(), isSystemDark);
    m_session = std::make_unique<Session>(store, *m_defaults, *m_themes, [this](CommandID command) {
        if (m_window) m_window->perform(command);
    });
    m_style = std::make_unique<StyleSheet>(m_session->preferences, *m_themes);
    m_window = std::make_unique<MainWindow>(*m_session, *this);
    m_session->start();
    reportFirstFrame(m_window->window());
    startIndexing();
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
                if (application->m_session) application->m_session->finish();
                application->quit();
                return G_SOURCE_REMOVE;
            },
            this);
    }
}

void Application::on_shutdown() {
    m_housekeeping.reset();
    m_feeder.reset();
    m_window.reset();
    m_style.reset();
    m_session.reset();
    m_themes.reset();
    Gtk::Application::on_shutdown();
}

}  // namespace corvel
