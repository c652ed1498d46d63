#pragma once

#include "app/settings/Localisation.h"
#include "platform/UserDefaults.h"

#include <gtkmm/paned.h>
#include <gtkmm/widget.h>
#include <sigc++/signal.h>

namespace corvel {

/// Sidebar, list, note and assistant side by side. Their widths are remembered; in a narrow window
/// the sidebar gives way first, then the list, and both come back when there is room. Where one of
/// them is asked for all the same, the assistant gives way to it.
class PaneLayout {
public:
    PaneLayout(UserDefaults& defaults, Gtk::Widget& sidebar, Gtk::Widget& list, Gtk::Widget& note);

    Gtk::Widget& widget() { return m_outer; }
    void relabel(const Localisation& texts);
    /// Puts the assistant beside the note; hidden until it is shown.
    void setAssistant(Gtk::Widget& assistant);
    void showAssistant(bool isShown);
    bool isAssistantShown() const { return m_assistant != nullptr && m_assistant->get_visible(); }
    void remember();

    /// To be called when the window has another width.
    void setAvailableWidth(int width);
    /// To be called when the note's pane may need another width: with a note it has more buttons.
    void refit();
    /// In a wide window shows or hides the sidebar for good; in a narrow one it takes the list's
    /// place until something is chosen in it.
    void toggleSidebar();
    void sidebarChosen();
    bool isSidebarShown() const { return m_sidebar.get_visible(); }
    void showList();

    /// Sidebar, list or assistant came or went.
    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    void arrange();
    int noteWidth() const;
    int workWidth() const;
    int smallestAssistant() const;
    void placeAssistant();
    void assistantMoved();
    int listAlone();
    int listBeside();
    bool fitsAll();
    bool fitsTwo();
    int sidebarRoom(int wanted) const;
    int listRoom(int wanted) const;
    void limit(Gtk::Paned& paned, int& width, int smallest, int largest);

    UserDefaults& m_defaults;
    Gtk::Widget& m_sidebar;
    Gtk::Widget& m_list;
    Gtk::Widget& m_note;
    Gtk::Paned m_outer;
    Gtk::Paned m_inner;
    Gtk::Paned m_work;  ///< note and assistant
    Gtk::Widget* m_assistant = nullptr;
    int m_available = 0;
    int m_sidebarWidth;
    int m_listWidth;
    int m_listBeside;  ///< least width of the list beside the sidebar
    int m_listAlone;   ///< least width of the list when the sidebar is hidden
    int m_assistantWidth;
    bool m_wantsAssistant = false;
    bool m_wantsSidebar;
    bool m_isSidebarOver = false;
    bool m_isListOver = false;
    bool m_isArranging = false;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
