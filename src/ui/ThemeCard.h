#pragma once

#include "app/settings/Localisation.h"
#include "themes/Theme.h"

#include <giomm/simpleactiongroup.h>
#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/togglebutton.h>
#include <sigc++/signal.h>

namespace corvel {

/// One theme of the picker: a sample that chooses it, its name, and a menu.
class ThemeCard : public Gtk::Box {
public:
    enum class Action { edit, duplicate, remove };

    ThemeCard(Theme theme, const Localisation& texts);

    const Theme& theme() const { return m_theme; }
    /// One of the cards of a group is the chosen one.
    Gtk::ToggleButton& button() { return m_button; }
    void setCurrent(bool isCurrent);
    void focusCard() { m_button.grab_focus(); }

    sigc::signal<void()>& signalChosen() { return m_chosen; }
    sigc::signal<void(Action)>& signalAction() { return m_action; }

private:
    void buildSample();
    void buildCaption();
    void buildMenu();
    void addKeys();
    void addAction(const char* name, Action action);
    std::string kind() const;

    Theme m_theme;
    const Localisation& m_texts;
    Gtk::ToggleButton m_button;
    Gtk::Image m_mark;
    Gtk::MenuButton m_menu;
    Glib::RefPtr<Gio::SimpleActionGroup> m_actions;
    sigc::signal<void()> m_chosen;
    sigc::signal<void(Action)> m_action;
};

}  // namespace corvel
