#pragma once

#include <gtk/gtk.h>

#include <string>

/// Very long lines in text buffers. The toolkit lays a line out anew at each key, so these are
/// shown in pieces (see editing::SoftBreaks); what is saved, copied or sent elsewhere has no
/// breaks.
namespace corvel::longlines {

/// Fills a buffer, in pieces where it must be.
void load(GtkTextBuffer* buffer, const std::string& content);
/// A long line that is pasted into the buffer later is shown in pieces, too.
void watchInsertions(GtkTextBuffer* buffer);
/// Copying and cutting in the view give whole lines.
void watchClipboard(GtkTextView* view);

bool areInPieces(GtkTextBuffer* buffer);
/// A part of the buffer as it is in the note.
std::string textOf(GtkTextBuffer* buffer, const GtkTextIter& start, const GtkTextIter& end);
/// Whether the line at a place is no line of the note, but a piece of one.
bool isPiece(const GtkTextIter& place);

}  // namespace corvel::longlines
