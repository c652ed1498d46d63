#include "ui/NoteBuffers.h"

#include "ui/LongLines.h"

#include <gtksourceview/gtksource.h>

#include <algorithm>
#include <cstddef>

namespace corvel {

namespace {

constexpr std::size_t kMostBuffers = 16;
constexpr int kMostCharacters = 8'000'000;

void load(Gtk::TextBuffer& buffer, const std::string& content) {
    // Opening a note is no step that can be undone.
    buffer.begin_irreversible_action();
    longlines::load(buffer.gobj(), content);
    buffer.end_irreversible_action();
    buffer.place_cursor(buffer.begin());
    buffer.set_modified(false);
}

}  // namespace

Glib::RefPtr<Gtk::TextBuffer> NoteBuffers::emptyBuffer() {
    auto* buffer = GTK_TEXT_BUFFER(gtk_source_buffer_new(nullptr));
    longlines::watchInsertions(buffer);
    return Glib::wrap(buffer);
}

std::string NoteBuffers::textOf(const Gtk::TextBuffer& buffer) {
    auto* handle = const_cast<GtkTextBuffer*>(buffer.gobj());
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(handle, &start, &end);
    return longlines::textOf(handle, start, end);
}

Glib::RefPtr<Gtk::TextBuffer> NoteBuffers::bufferFor(const Uuid& id, const std::string& content) {
    const auto known = std::ranges::find(m_entries, id, &Entry::id);
    if (known != m_entries.end()) {
        m_entries.splice(m_entries.begin(), m_entries, known);
        auto buffer = m_entries.front().buffer;
        if (textOf(*buffer) != content) load(*buffer, content);
        return buffer;
    }
    auto buffer = emptyBuffer();
    load(*buffer, content);
    m_entries.push_front({id, buffer});
    trim();
    return buffer;
}

void NoteBuffers::trim() {
    int characters = 0;
    std::size_t count = 0;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        characters += entry->buffer->get_char_count();
        if (++count > 1 && (count > kMostBuffers || characters > kMostCharacters)) {
            m_entries.erase(entry, m_entries.end());
            return;
        }
    }
}

}  // namespace corvel
