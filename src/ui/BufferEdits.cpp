#include "ui/BufferEdits.h"

#include <utility>

namespace corvel {

void BufferEdits::follow(const Glib::RefPtr<Gtk::TextBuffer>& buffer) {
    m_buffer = buffer;
    m_count = buffer->get_char_count();
    // Behind the buffer's own handler: only what was done is told, and the count tells how much.
    m_insertion = buffer->signal_insert().connect(
        [this](const auto& end, const Glib::ustring& text, int) { inserted(end, text); });
    m_removal =
        buffer->signal_erase().connect([this](const auto& start, const auto&) { removed(start); });
}

void BufferEdits::stop() {
    m_insertion.disconnect();
    m_removal.disconnect();
    m_buffer.reset();
}

void BufferEdits::inserted(const Gtk::TextBuffer::iterator& end, const Glib::ustring& text) {
    const int count = m_buffer->get_char_count();
    const int length = count - std::exchange(m_count, count);
    if (length <= 0) return;
    m_edited.emit({static_cast<std::size_t>(end.get_offset() - length), 0, text.raw()});
}

void BufferEdits::removed(const Gtk::TextBuffer::iterator& place) {
    const int count = m_buffer->get_char_count();
    const int length = std::exchange(m_count, count) - count;
    if (length <= 0) return;
    m_edited.emit(
        {static_cast<std::size_t>(place.get_offset()), static_cast<std::size_t>(length), {}});
}

}  // namespace corvel
