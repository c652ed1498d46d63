#pragma once

#include "ui/Menus.h"

#include <giomm/menumodel.h>
#include <gtkmm/menubutton.h>

namespace corvel {

/// Lets `button` open `menu`. Its popover is made when it is first opened: one of some dozen items
/// takes longer to make than the button, and most are never opened.
inline void setLazyMenu(Gtk::MenuButton& button, const Glib::RefPtr<Gio::MenuModel>& menu) {
    button.unset_popover();
    button.set_create_popup_func([&button, menu] {
        if (button.get_menu_model() == menu) return;
        button.set_menu_model(menu);
        focusFirstOfSubmenus(*button.get_popover());
    });
}

}  // namespace corvel
