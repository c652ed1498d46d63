#pragma once

#include "app/Session.h"
#include "ui/AssistantSettings.h"
#include "ui/DataSettings.h"
#include "ui/Labels.h"
#include "ui/PageMenu.h"
#include "ui/Rows.h"
#include "ui/SettingsRows.h"
#include "ui/SubWindow.h"

#include <optional>
#include <vector>

namespace corvel {

/// In the order of the window.
enum class SettingsPage { general, editor, appearance, assistant, sync, data };

/// The window of preferences. Each change is written and takes effect at once.
class SettingsWindow {
public:
    /// `session` and `parent` must outlive the window.
    SettingsWindow(Session& session, Gtk::Window& parent);

    void present();
    /// Turns to a page; the window is not shown by this.
    void showPage(SettingsPage page);
    Gtk::Window& window() { return m_window.window(); }

private:
    void addPage(SettingsPage which,
                 adw::PreferencesPage& page,
                 const Text& title,
                 const char* icon);
    adw::PreferencesGroup addGroup(adw::PreferencesPage& page, const Text& title);
    void addGeneral();
    void addExternalFiles(adw::PreferencesPage& page);
    void addEditor();
    void addEditorText(adw::PreferencesPage& page);
    void addAppearance();
    void addAssistant();
    void addSync();
    void addData();

    Session& m_session;
    SubWindow m_window;
    Labels m_labels;
    SettingsRows m_rows;
    AssistantSettings m_assistant;
    std::optional<DataSettings> m_data;
    std::optional<PageMenu> m_pageMenu;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
