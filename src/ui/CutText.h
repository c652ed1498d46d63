#pragma once

#include <gtkmm/label.h>

namespace corvel {

/// Gives the label a tooltip with its whole text for as long as its room is too small for it.
void tellWhenCut(Gtk::Label& label);

}  // namespace corvel
