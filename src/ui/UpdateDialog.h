#pragma once

#include "app/settings/Localisation.h"

#include <gtkmm/window.h>

namespace corvel {

/// Looks for a newer version of the program and says what came of it, in a dialog that is there at
/// once and can be closed while it looks. `texts` must outlive the dialog.
void showUpdateDialog(Gtk::Window& parent, const Localisation& texts);

}  // namespace corvel
