#pragma once

#include "app/Session.h"
#include "ui/Adw.h"

#include <giomm/menu.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/togglebutton.h>

#include <array>
#include <string>

namespace corvel {

/// The header bar over the note: Editor, Split, Preview; export, assistant, the note's menu.
class NoteHeader {
public:
    explicit NoteHeader(Session& session);

    adw::HeaderBar& bar() { return m_bar; }
    void relabel();
    /// The mode shown is the state's.
    void followMode();
    void setHasNote(bool hasNote);
    /// Shows whether the open note mirrors a file, and which.
    void followFile();
    /// Without the list its button for the sidebar is gone too: this bar takes it over.
    Gtk::Button& sidebarButton() { return m_sidebar; }
    void setListHidden(bool isHidden) { m_sidebar.set_visible(isHidden); }

private:
    void addModes();
    void addButtons();
    void followAssistant();
    Glib::RefPtr<Gio::Menu> noteMenu() const;
    Glib::RefPtr<Gio::Menu> fileMenu(const std::string& path) const;

    Session& m_session;
    adw::HeaderBar m_bar;
    Gtk::Button m_sidebar;
    Gtk::Box m_switch;
    std::array<Gtk::ToggleButton, 3> m_modes;
    Gtk::MenuButton m_file;
    Gtk::Button m_export;
    Gtk::Button m_assistant;
    Gtk::MenuButton m_menu;
    ScopedConnection m_assistantShown;
};

}  // namespace corvel
