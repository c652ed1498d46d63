#pragma once

#include "library/NoteState.h"
#include "platform/Database.h"

namespace corvel::listRows {

// Rows of tagList and folderList: the notes of each tag and folder that ordinary lists show, in
// the order of those lists. Nothing else moves when a note is edited, so its rows of noteTag and
// noteFolder stay as they are.

/// Brings the note's rows from one state to the other. A state that is not listed has none.
void update(Database& database, RowId note, const NoteState& before, const NoteState& after);

/// Adds the rows of a note that has none, from its records.
void addFromRecords(Database& database, RowId note);

/// Takes the rows of all notes away.
void clear(Database& database);

}  // namespace corvel::listRows
