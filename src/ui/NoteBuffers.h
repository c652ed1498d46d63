#pragma once

#include "platform/Uuid.h"

#include <gtkmm/textbuffer.h>

#include <list>
#include <string>

namespace corvel {

/// The text buffers of the last notes, one for each, so that undo never crosses notes and is still
/// there when a note is opened again.
class NoteBuffers {
public:
    /// The buffer of note `id` holding `content`. Its undo steps are kept; when it held another
    /// text, the change is one more of them (a very large text begins anew).
    Glib::RefPtr<Gtk::TextBuffer> bufferFor(const Uuid& id, const std::string& content);

    /// A buffer of no note: a source view warns of any other kind.
    static Glib::RefPtr<Gtk::TextBuffer> emptyBuffer();

    /// The text without the marks and breaks that only the buffer knows.
    static std::string textOf(const Gtk::TextBuffer& buffer);

private:
    struct Entry {
        Uuid id;
        Glib::RefPtr<Gtk::TextBuffer> buffer;
    };

    void trim();

    std::list<Entry> m_entries;  // the last used first
};

}  // namespace corvel
