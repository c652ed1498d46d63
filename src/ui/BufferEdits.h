#pragma once

#include "library/TextEdit.h"
#include "platform/ScopedConnection.h"

#include <gtkmm/textbuffer.h>
#include <sigc++/signal.h>

namespace corvel {

/// Tells what changes in a text buffer, edit by edit, whoever changes it. What another handler
/// stopped or replaced is told as it really happened.
class BufferEdits {
public:
    void follow(const Glib::RefPtr<Gtk::TextBuffer>& buffer);
    void stop();

    sigc::signal<void(const TextEdit&)>& signalEdited() { return m_edited; }

private:
    void inserted(const Gtk::TextBuffer::iterator& end, const Glib::ustring& text);
    void removed(const Gtk::TextBuffer::iterator& place);

    Glib::RefPtr<Gtk::TextBuffer> m_buffer;
    int m_count = 0;  // characters in the buffer as of the last edit
    ScopedConnection m_insertion;
    ScopedConnection m_removal;
    sigc::signal<void(const TextEdit&)> m_edited;
};

}  // namespace corvel
