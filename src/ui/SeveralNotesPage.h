#pragma once

#include "app/Session.h"
#include "ui/Adw.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>

namespace corvel {

/// What stands in the note's place while several notes are selected: how many, and what can be done
/// with them.
class SeveralNotesPage {
public:
    explicit SeveralNotesPage(Session& session);  // must outlive the page

    Gtk::Widget& widget() { return m_page.widget(); }
    /// Follows count, filter and language.
    void refresh();

private:
    Session& m_session;
    adw::StatusPage m_page;
    Gtk::Button m_archive;
    Gtk::Button m_export;
    Gtk::Button m_trash;
};

}  // namespace corvel
