#include "ui/BufferExcerpt.h"

#include "platform/Handle.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr int kNearCharacters = 2000;

GtkTextIter iterAtMark(GtkTextBuffer* buffer, GtkTextMark* mark) {
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_mark(buffer, &iter, mark);
    return iter;
}

// The common ends of old and new text need no change; characters stay whole.
editing::TextEdit minimal(const std::string& text, const editing::TextEdit& edit) {
    auto [range, replacement, selection] = edit;
    const auto isInner = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    std::size_t same = 0;
    const auto most = std::min(range.end - range.begin, replacement.size());
    while (same < most && text[range.begin + same] == replacement[same])
        ++same;
    while (same > 0 && ((same < replacement.size() && isInner(replacement[same])) ||
                        (range.begin + same < text.size() && isInner(text[range.begin + same]))))
        --same;
    range.begin += same;
    replacement.erase(0, same);
    while (range.end > range.begin && !replacement.empty() &&
           text[range.end - 1] == replacement.back() && !isInner(replacement.back())) {
        --range.end;
        replacement.pop_back();
    }
    return {range, replacement, selection};
}

}  // namespace

BufferExcerpt::BufferExcerpt(GtkTextBuffer* buffer,
                             const GtkTextIter& start,
                             const GtkTextIter& end)
    : m_buffer(buffer), m_start(gtk_text_iter_get_offset(&start)) {
    const Handle<char, g_free> text(gtk_text_buffer_get_slice(buffer, &start, &end, TRUE));
    m_excerpt.text = text.get();
    const auto offsetOf = [&](GtkTextMark* mark) {
        const auto iter = iterAtMark(buffer, mark);
        const char* at = g_utf8_offset_to_pointer(m_excerpt.text.c_str(),
                                                  gtk_text_iter_get_offset(&iter) - m_start);
        return static_cast<std::size_t>(at - m_excerpt.text.c_str());
    };
    m_excerpt.selection = {offsetOf(gtk_text_buffer_get_selection_bound(buffer)),
                           offsetOf(gtk_text_buffer_get_insert(buffer))};
}

BufferExcerpt BufferExcerpt::lines(GtkTextBuffer* buffer, int before, int after) {
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_selection_bounds(buffer, &start, &end);
    const int first = std::max(0, gtk_text_iter_get_line(&start) - before);
    gtk_text_iter_set_line(&start, first);
    if (after > 0) gtk_text_iter_forward_lines(&end, after);
    if (!gtk_text_iter_ends_line(&end)) gtk_text_iter_forward_to_line_end(&end);
    return {buffer, start, end};
}

BufferExcerpt BufferExcerpt::nearCursor(GtkTextBuffer* buffer) {
    auto start = iterAtMark(buffer, gtk_text_buffer_get_insert(buffer));
    auto end = start;
    const int before = std::min(gtk_text_iter_get_line_offset(&start), kNearCharacters);
    gtk_text_iter_backward_chars(&start, before);
    if (!gtk_text_iter_ends_line(&end)) gtk_text_iter_forward_to_line_end(&end);
    const int cursor = gtk_text_iter_get_offset(&start) + before;
    if (gtk_text_iter_get_offset(&end) - cursor > kNearCharacters) {
        gtk_text_iter_set_offset(&end, cursor + kNearCharacters);
    }
    return {buffer, start, end};
}

GtkTextIter BufferExcerpt::iterAt(std::string_view text, std::size_t offset) const {
    GtkTextIter iter;
    const auto characters = g_utf8_strlen(text.data(), static_cast<gssize>(offset));
    gtk_text_buffer_get_iter_at_offset(m_buffer, &iter, m_start + static_cast<int>(characters));
    return iter;
}

void BufferExcerpt::apply(const editing::TextEdit& edit) const {
    const auto change = minimal(m_excerpt.text, edit);
    gtk_text_buffer_begin_user_action(m_buffer);
    auto start = iterAt(m_excerpt.text, change.range.begin);
    auto end = iterAt(m_excerpt.text, change.range.end);
    if (!gtk_text_iter_equal(&start, &end)) gtk_text_buffer_delete(m_buffer, &start, &end);
    if (!change.replacement.empty()) {
        gtk_text_buffer_insert(m_buffer, &start, change.replacement.data(),
                               static_cast<int>(change.replacement.size()));
    }
    const std::string changed = edit.appliedTo(m_excerpt.text);
    const auto cursor = iterAt(changed, edit.selection.cursor);
    const auto anchor = iterAt(changed, edit.selection.anchor);
    gtk_text_buffer_select_range(m_buffer, &cursor, &anchor);
    gtk_text_buffer_end_user_action(m_buffer);
}

}  // namespace corvel
