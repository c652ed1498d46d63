#pragma once

#include "app/Session.h"
#include "library/DerivedRows.h"
#include "model/PersistenceController.h"
#include "ui/AppActions.h"
#include "ui/FontsAhead.h"
#include "ui/Housekeeping.h"
#include "ui/IndexFeeder.h"
#include "ui/MainWindow.h"
#include "ui/SearchProvider.h"
#include "ui/StyleSheet.h"
#include "ui/UpgradeWindow.h"

#include <gtkmm/application.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// The running program: one instance a user, one window. Opens the store when it is first asked for
/// something. Started as a service by the desktop it has no window until one is wanted, and ends
/// when nothing has been asked of it for a while.
class Application : public Gtk::Application {
public:
    static Glib::RefPtr<Application> create();
    ~Application() override;

    /// After the run: the program is to be started again.
    bool isToRestart() const { return m_isToRestart; }

protected:
    void on_startup() override;
    void on_activate() override;
    void on_open(const type_vec_files& files, const Glib::ustring& hint) override;
    void on_window_removed(Gtk::Window* window) override;
    void on_shutdown() override;
    bool dbus_register_vfunc(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                             const Glib::ustring& path) override;
    void dbus_unregister_vfunc(const Glib::RefPtr<Gio::DBus::Connection>& connection,
                               const Glib::ustring& path) override;

private:
    Application();

    void withWindow(std::function<void()> then);
    void openLibrary();
    bool hasToUpgrade(std::chrono::milliseconds time);
    void openWindow();
    void followLanguage();
    Session& session();
    void perform(CommandID command);
    DesktopSearch& desktopSearch();
    void showNote(const Uuid& id, std::uint32_t time);
    void searchInside(const std::vector<std::string>& terms, std::uint32_t time);
    SearchProvider::Actions searchActions();
    void startIndexing();
    void keepBackups();
    void endOnSignals();

    std::optional<AppActions> m_actions;
    std::optional<FontsAhead> m_fonts;
    std::unique_ptr<SearchProvider> m_searchProvider;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<Localisation> m_texts;
    std::unique_ptr<derivedRows::Rebuild> m_rebuild;
    std::unique_ptr<UpgradeWindow> m_upgrade;
    std::unique_ptr<ThemeManager> m_themes;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<DesktopSearch> m_search;
    std::unique_ptr<StyleSheet> m_style;
    std::unique_ptr<MainWindow> m_window;
    std::vector<std::function<void()>> m_forWindow;  // wait for it
    std::unique_ptr<IndexFeeder> m_feeder;
    std::unique_ptr<Housekeeping> m_housekeeping;
    bool m_isToRestart = false;
};

}  // namespace corvel
