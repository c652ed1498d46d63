#include "ui/UndoStep.h"

namespace corvel {

// GtkTextBuffer joins a user action of one insertion to an insertion that ends where it begins. One
// of an insertion and a deletion stays as it is.
void insertAsUndoStep(Gtk::TextBuffer& buffer,
                      const Gtk::TextBuffer::iterator& place,
                      const std::string& text) {
    buffer.begin_user_action();
    const auto end = buffer.insert(place, text + ' ');
    auto tail = end;
    tail.backward_char();
    buffer.erase(tail, end);
    buffer.end_user_action();
}

}  // namespace corvel
