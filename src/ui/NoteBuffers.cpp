#include "ui/NoteBuffers.h"

#include "app/editing/TextDifference.h"
#include "ui/LongLines.h"

#include <gtksourceview/gtksource.h>

#include <algorithm>
#include <cstddef>

namespace corvel {

namespace {

constexpr std::size_t kMostBuffers = 16;
constexpr int kMostCharacters = 8'000'000;
constexpr std::size_t kMostCompared = 4'000'000;

void load(Gtk::TextBuffer& buffer, const std::string& content) {
    // Opening a note is no step that can be undone.
    buffer.begin_irreversible_action();
    longlines::load(buffer.gobj(), content);
    buffer.end_irreversible_action();
    buffer.place_cursor(buffer.begin());
    buffer.set_modified(false);
}

int charactersIn(std::string_view text) {
    return static_cast<int>(g_utf8_strlen(text.data(), static_cast<gssize>(text.size())));
}

// From the start to the end; `place` is where the run stands in what the buffer holds by then.
void applyDifferences(Gtk::TextBuffer& buffer, std::string_view text, std::string_view content) {
    using Kind = editing::DifferenceRun::Kind;
    int place = 0;
    for (const auto& run : editing::differencesOf(text, content)) {
        const auto part = [](std::string_view whole, const TextRange& range) {
            return whole.substr(range.begin, range.end - range.begin);
        };
        const auto added = part(content, run.after);
        if (run.kind == Kind::removed) {
            buffer.erase(buffer.get_iter_at_offset(place),
                         buffer.get_iter_at_offset(place + charactersIn(part(text, run.before))));
        } else if (run.kind == Kind::added) {
            buffer.insert(buffer.get_iter_at_offset(place), added.data(),
                          added.data() + added.size());
        }
        place += charactersIn(added);  // none for what was removed
    }
}

// A text that was changed elsewhere: one step that can be undone, in which the cursor stays with
// the words it stood at.
void change(const Glib::RefPtr<Gtk::TextBuffer>& buffer, const std::string& content) {
    const std::string text = NoteBuffers::textOf(*buffer.get());
    if (text == content) return;
    const bool isTooMuch =
        longlines::areInPieces(buffer->gobj()) || text.size() + content.size() > kMostCompared;
    if (!isTooMuch) {
        buffer->begin_user_action();
        applyDifferences(*buffer.get(), text, content);
        buffer->end_user_action();
    }
    if (isTooMuch || NoteBuffers::textOf(*buffer.get()) != content) load(*buffer.get(), content);
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
        change(buffer, content);
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
