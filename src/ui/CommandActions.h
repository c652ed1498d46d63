#pragma once

#include "app/Session.h"

#include <giomm/simpleaction.h>
#include <gtkmm/application.h>
#include <gtkmm/applicationwindow.h>

#include <string>
#include <vector>

namespace corvel {

/// The commands of the table as actions of a window, with their accelerators, and the stateful
/// actions behind the menus' radio items: "language", "uiSize" and "sort".
class CommandActions {
public:
    CommandActions(Session& session, Gtk::Application& application, Gio::ActionMap& window);

private:
    struct Bound {
        CommandID id;
        Glib::RefPtr<Gio::SimpleAction> action;
    };

    void addCommand(const Command& command, Gtk::Application& application, Gio::ActionMap& window);
    template <typename Changed>
    Glib::RefPtr<Gio::SimpleAction> addChoice(Gio::ActionMap& window,
                                              const char* name,
                                              const std::string& value,
                                              Changed changed);
    void addChoices(Gio::ActionMap& window);
    void followState();
    void updateEnabled();
    void preferenceChanged(const std::string& key);

    Session& m_session;
    std::vector<Bound> m_bound;
    Glib::RefPtr<Gio::SimpleAction> m_language;
    Glib::RefPtr<Gio::SimpleAction> m_size;
    Glib::RefPtr<Gio::SimpleAction> m_sort;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
