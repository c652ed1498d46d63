#pragma once

#include <gtkmm/popover.h>

#include <string>

namespace corvel {

/// The label of a menu's item that shows `text` as it is: an underscore would be taken for a
/// mnemonic.
std::string menuLabel(const std::string& text);

/// Lets the submenus of `menu`, a menu's popover, open with the focus on their first item instead
/// of the entry that leads back. Does nothing to other popovers.
void focusFirstOfSubmenus(Gtk::Popover& menu);

}  // namespace corvel
