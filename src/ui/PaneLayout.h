#pragma once

#include "app/settings/Localisation.h"
#include "platform/UserDefaults.h"

#include <gtkmm/paned.h>
#include <gtkmm/widget.h>
#include <sigc++/signal.h>

namespace corvel {

/// Sidebar, list and note side by side. Their widths are remembered; in a narrow window the sidebar
/// gives way first, then the list, and both come back when there is room.
class PaneLayout {
public:
    PaneLayout(UserDefaults& defaults, Gtk::Widget& sidebar, Gtk::Widget& list, Gtk::Widget& note);

    Gtk::Widget& widget() { return m_outer; }
    void relabel(const Localisation& texts);
    void remember();

    /// To be called when the window has another width.
    void setAvailableWidth(int width);
    /// In a wide window shows or hides the sidebar for good; in a narrow one it takes the list's
    /// place until something is chosen in it.
    void toggleSidebar();
    void sidebarChosen();
    bool isSidebarShown() const { return m_sidebar.get_visible(); }
    void showList();

    /// Sidebar or list came or went.
    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    void arrange();
    int noteWidth() const;
    int listAlone();
    int sidebarRoom(int wanted) const;
    int listRoom(int wanted) const;
    void limit(Gtk::Paned& paned, int& width, int smallest, int largest);

    UserDefaults& m_defaults;
    Gtk::Widget& m_sidebar;
    Gtk::Widget& m_list;
    Gtk::Widget& m_note;
    Gtk::Paned m_outer;
    Gtk::Paned m_inner;
    int m_available = 0;
    int m_sidebarWidth;
    int m_listWidth;
    int m_listAlone;  ///< least width of the list when the sidebar is hidden
    bool m_wantsSidebar;
    bool m_isSidebarOver = false;
    bool m_isListOver = false;
    bool m_isArranging = false;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
