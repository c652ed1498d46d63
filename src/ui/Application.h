#pragma once

#include "app/Session.h"
#include "model/PersistenceController.h"
#include "ui/Housekeeping.h"
#include "ui/IndexFeeder.h"
#include "ui/MainWindow.h"
#include "ui/StyleSheet.h"

#include <gtkmm/application.h>

#include <memory>

namespace corvel {

/// The running program: one instance a user, one window. Opens the store when it is first
/// activated.
class Application : public Gtk::Application {
public:
    static Glib::RefPtr<Application> create();
    ~Application() override;

protected:
    void on_startup() override;
    void on_activate() override;
    void on_shutdown() override;

private:
    Application();

    void openWindow();
    void startIndexing();
    void endOnSignals();

    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<ThemeManager> m_themes;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<StyleSheet> m_style;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<IndexFeeder> m_feeder;
    std::unique_ptr<Housekeeping> m_housekeeping;
};

}  // namespace corvel
