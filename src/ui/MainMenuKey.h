#pragma once

#include "platform/Handle.h"

#include <giomm/menumodel.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/window.h>

#include <functional>
#include <memory>

namespace corvel {

/// F10 where the button of the main menu is hidden together with the sidebar: the menu opens below
/// the button that shows the sidebar. Elsewhere the toolkit opens it.
class MainMenuKey {
public:
    /// Gives the button to open the menu at; null where the toolkit finds its own.
    using Place = std::function<Gtk::Widget*()>;

    /// The window and the widgets of `place` must outlive this.
    MainMenuKey(Gtk::Window& window, Glib::RefPtr<Gio::MenuModel> menu, Place place);
    MainMenuKey(const MainMenuKey&) = delete;
    MainMenuKey& operator=(const MainMenuKey&) = delete;
    ~MainMenuKey();

private:
    bool open();
    void giveFocusBack();
    void drop();

    Gtk::Window& m_window;
    Glib::RefPtr<Gio::MenuModel> m_menu;
    Place m_place;
    std::unique_ptr<Gtk::PopoverMenu> m_popover;
    GObjectHandle<GtkWidget> m_focus;  ///< what had it before
};

}  // namespace corvel
