#pragma once

#include "app/Session.h"
#include "ui/Labels.h"
#include "ui/Rows.h"
#include "ui/SettingsRows.h"

#include <gtkmm/button.h>
#include <gtkmm/progressbar.h>
#include <gtkmm/window.h>

#include <filesystem>
#include <string>
#include <vector>

namespace corvel {

/// "yesterday, 12:04": when a backup was made.
std::string backupTime(Date madeAt, const Localisation& texts);

/// The page of the settings about what lies on the disk: backups and the way back to one, the
/// trash, and where everything is.
class DataSettings {
public:
    /// All must outlive the page. Questions are asked in `window`.
    DataSettings(Session& session, Labels& labels, SettingsRows& rows, Gtk::Window& window);

    adw::PreferencesPage& page() { return m_page; }

private:
    adw::PreferencesGroup addGroup(const Text& title);
    void addBackups();
    void addTrash();
    void addPlaces();
    void addPlace(adw::PreferencesGroup& group,
                  const Text& title,
                  const std::filesystem::path& folder);
    void showBackups();
    void showState();
    void listBackups(const std::vector<BackupInfo>& backups);
    void addBackup(const BackupInfo& backup);
    std::string detailOf(const BackupInfo& backup) const;
    void askToRestore(const BackupInfo& backup);

    Session& m_session;
    Labels& m_labels;
    SettingsRows& m_rows;
    Gtk::Window& m_window;
    adw::PreferencesPage m_page;
    adw::PreferencesGroup m_backups;
    adw::ActionRow m_state;
    Gtk::ProgressBar m_bar;
    Gtk::Button m_cancel;
    std::vector<BackupInfo> m_shown;
    std::vector<Gtk::Widget*> m_backupRows;
    std::vector<Gtk::Button*> m_restoreButtons;
    ScopedConnection m_changed;
};

}  // namespace corvel
