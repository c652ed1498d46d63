#pragma once

#include "app/settings/Localisation.h"

#include <gtkmm/window.h>

namespace corvel {

void showAboutWindow(Gtk::Window& parent, const Localisation& texts);

}  // namespace corvel
