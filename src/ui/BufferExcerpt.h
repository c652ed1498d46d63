#pragma once

#include "app/editing/TextEdit.h"

#include <gtk/gtk.h>

#include <optional>
#include <string>

namespace corvel {

/// Some lines of a text buffer around its selection, and the way back: an edit of them is made as
/// one step that the user can undo.
class BufferExcerpt {
public:
    /// The lines of the selection with as many around them as asked for.
    static BufferExcerpt lines(GtkTextBuffer* buffer, int before, int after);
    /// The cursor's line, of which a very long one is cut to what is near. For no selection.
    static BufferExcerpt nearCursor(GtkTextBuffer* buffer);

    const std::string& text() const { return m_excerpt.text; }
    const editing::Selection& selection() const { return m_excerpt.selection; }

    /// Changes no more of the buffer than differs. To be called before the buffer changes
    /// otherwise.
    void apply(const editing::TextEdit& edit) const;

private:
    BufferExcerpt(GtkTextBuffer* buffer, const GtkTextIter& start, const GtkTextIter& end);
    GtkTextIter iterAt(std::string_view text, std::size_t offset) const;

    GtkTextBuffer* m_buffer;
    int m_start;  // in characters
    editing::Excerpt m_excerpt;
};

}  // namespace corvel
