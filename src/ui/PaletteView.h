#pragma once

#include "app/Session.h"
#include "ui/PaletteRow.h"

#include <giomm/liststore.h>
#include <gtkmm/box.h>
#include <gtkmm/entry.h>
#include <gtkmm/label.h>
#include <gtkmm/listview.h>
#include <gtkmm/overlay.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/singleselection.h>

#include <functional>

namespace corvel {

/// The command palette and note switcher: a field over ten rows in the upper third of the window,
/// above everything and dimming nothing. It closes when the focus leaves it.
class PaletteView : public Gtk::Box {
public:
    using Choose = std::function<void(const std::variant<CommandID, Uuid>&)>;

    /// `chosen` is called after the palette has closed and the focus is back where it was.
    PaletteView(Session& session, Choose chosen);

    void open(PaletteViewModel::Kind kind);
    void close();

private:
    void build();
    void buildList();
    void followKeys();
    bool keyPressed(guint key);
    void fitRows();
    void itemsChanged();
    void selectionChanged();
    const Text& nothing() const;
    void describe();
    void activate();
    void relabel();

    Session& m_session;
    PaletteViewModel& m_model;
    Choose m_choose;
    Gtk::Entry m_entry;
    Gtk::ScrolledWindow m_scroller;
    Gtk::ListView m_list;
    Gtk::Label m_nothing;
    Glib::RefPtr<Gio::ListStore<Glib::Object>> m_rows;
    Glib::RefPtr<Gtk::SingleSelection> m_selection;
    Gtk::Widget* m_focusBefore = nullptr;
    bool m_isFilling = false;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
