#pragma once

#include <gtkmm/window.h>

namespace corvel {

/// With the environment variable CORVEL_FIRST_FRAME set, prints "first-frame NANOSECONDS"
/// (monotonic clock) once the window's first frame is painted: what bench/start.py measures.
/// Otherwise does nothing.
void reportFirstFrame(Gtk::Window& window);

}  // namespace corvel
