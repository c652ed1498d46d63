#include "ui/BufferOffsets.h"

#include "app/editing/SoftBreaks.h"
#include "platform/Handle.h"
#include "ui/LongLines.h"

#include <glib.h>

#include <algorithm>
#include <string_view>

namespace corvel::bufferoffsets {

int characterAt(const Gtk::TextBuffer& buffer, std::size_t byte) {
    auto* handle = const_cast<GtkTextBuffer*>(buffer.gobj());
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(handle, &start, &end);
    const Handle<char, g_free> held(gtk_text_buffer_get_text(handle, &start, &end, TRUE));
    const std::string_view text(held.get());
    const bool isInPieces = longlines::areInPieces(handle);
    std::size_t at = 0;
    int characters = 0;
    for (; at < text.size(); ++characters) {
        const bool isBreak = isInPieces && text.substr(at).starts_with(editing::kSoftBreak);
        if (!isBreak && byte == 0) break;
        const auto size =
            static_cast<std::size_t>(g_utf8_next_char(text.data() + at) - (text.data() + at));
        at += size;
        if (!isBreak) byte -= std::min(byte, size);
    }
    return characters;
}

std::size_t byteAt(const Gtk::TextBuffer& buffer, int character) {
    auto* handle = const_cast<GtkTextBuffer*>(buffer.gobj());
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_start_iter(handle, &start);
    gtk_text_buffer_get_iter_at_offset(handle, &end, character);
    return longlines::textOf(handle, start, end).size();
}

}  // namespace corvel::bufferoffsets
