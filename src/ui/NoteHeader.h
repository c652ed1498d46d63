#pragma once

#include "app/Session.h"
#include "ui/Adw.h"

#include <giomm/menu.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/togglebutton.h>

#include <array>

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
    /// Without the list its button for the sidebar is gone too: this bar takes it over.
    void setListHidden(bool isHidden) { m_sidebar.set_visible(isHidden); }

private:
    void addModes();
    void addButtons();
    Glib::RefPtr<Gio::Menu> noteMenu() const;

    Session& m_session;
    adw::HeaderBar m_bar;
    Gtk::Button m_sidebar;
    Gtk::Box m_switch;
    std::array<Gtk::ToggleButton, 3> m_modes;
    Gtk::Button m_export;
    Gtk::Button m_assistant;
    Gtk::MenuButton m_menu;
};

}  // namespace corvel
