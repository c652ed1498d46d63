#pragma once

#include "app/ProviderKeyViewModel.h"
#include "app/Session.h"
#include "ui/Labels.h"
#include "ui/ModelRow.h"
#include "ui/Rows.h"

#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/spinner.h>
#include <gtkmm/window.h>

namespace corvel {

/// One provider in the settings: its model, its key, and what is known of the key.
class ProviderSettings {
public:
    /// All must outlive the rows.
    ProviderSettings(Session& session, Labels& labels, Gtk::Window& window, AIProviderType type);
    ProviderSettings(const ProviderSettings&) = delete;
    ProviderSettings& operator=(const ProviderSettings&) = delete;
    ~ProviderSettings() = default;

    adw::PreferencesGroup& group() { return m_group; }
    /// Looks for the key anew.
    void refresh() { m_key.refresh(); }

private:
    void buildEntry();
    void buildStatus();
    void relabel();
    void show();
    void showButtons();
    void testOrStop();
    void askToDelete();

    Session& m_session;
    Gtk::Window& m_window;
    ProviderKeyViewModel m_key;
    adw::PreferencesGroup m_group;
    ModelRow m_model;
    adw::PasswordEntryRow m_entry;
    Gtk::Button* m_peek;  // the row's own
    Gtk::Button& m_save;
    adw::ActionRow m_status;
    Gtk::Image& m_icon;
    Gtk::Spinner& m_spinner;
    Gtk::Button& m_test;
    Gtk::Button& m_delete;
    ScopedConnection m_changes;
    ScopedConnection m_saves;
};

}  // namespace corvel
