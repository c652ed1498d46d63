#pragma once

#include "app/Session.h"
#include "ui/Labels.h"
#include "ui/Rows.h"
#include "ui/SettingsRows.h"
#include "ui/SubWindow.h"

#include <filesystem>
#include <vector>

namespace corvel {

/// The window of preferences. Each change is written and takes effect at once.
class SettingsWindow {
public:
    /// `session` and `parent` must outlive the window.
    SettingsWindow(Session& session, Gtk::Window& parent);

    void present() { m_window.present(); }
    Gtk::Window& window() { return m_window.window(); }

private:
    void addPage(adw::PreferencesPage& page, const Text& title, const char* icon);
    adw::PreferencesGroup addGroup(adw::PreferencesPage& page, const Text& title);
    void addGeneral();
    void addEditor();
    void addEditorText(adw::PreferencesPage& page);
    void addAppearance();
    void addSync();
    void addData();
    void addPlace(adw::PreferencesGroup& group,
                  const Text& title,
                  const std::filesystem::path& folder);

    Session& m_session;
    SubWindow m_window;
    Labels m_labels;
    SettingsRows m_rows;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
