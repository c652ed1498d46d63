#pragma once

#include <gtkmm/textbuffer.h>

#include <string>

namespace corvel {

/// Inserts `text` at `place` as an undo step of its own: not joined to what was typed before it,
/// and with the cursor behind it when it is done again. The cursor is left where the toolkit puts
/// it.
void insertAsUndoStep(Gtk::TextBuffer& buffer,
                      const Gtk::TextBuffer::iterator& place,
                      const std::string& text);

}  // namespace corvel
