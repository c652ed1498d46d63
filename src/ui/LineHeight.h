#pragma once

#include <gtkmm/label.h>

namespace corvel {

/// Pixels that one line of the label's font takes, whatever its text: known without laying the text
/// out.
int lineHeight(Gtk::Label& label);

}  // namespace corvel
