#pragma once

#include "app/Session.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/revealer.h>

#include <functional>
#include <vector>

namespace corvel {

/// Above a note that is not in step with its file: what the matter is, and what can be done.
class LinkedFileBar : public Gtk::Revealer {
public:
    /// What needs more than the session.
    struct Callbacks {
        std::function<void()> compare;
        std::function<void()> locate;
        std::function<void()> saveAgain;
        std::function<void()> saveElsewhere;
        std::function<void()> giveFocus;  ///< to the note, when the bar goes
    };

    LinkedFileBar(Session& session, Callbacks callbacks);

    void refresh();

private:
    std::string message() const;
    void fillButtons();
    void addButton(const Text& label, const std::function<void()>& pressed);
    void keepAsOrdinary();

    Session& m_session;
    Callbacks m_callbacks;
    Gtk::Box m_bar;
    Gtk::Label m_text;
    Gtk::Box m_buttons;
    LinkState::Kind m_shown = LinkState::Kind::none;
    const char* m_language = "";
    ScopedConnection m_pressed;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
