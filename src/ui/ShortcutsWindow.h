#pragma once

#include "app/Session.h"

#include <gtkmm/window.h>

namespace corvel {

/// Shows the keys of every command, by group, and those of lists.
void showShortcutsWindow(Gtk::Window& parent, const Localisation& texts);

}  // namespace corvel
