#pragma once

#include "model/ViewContext.h"

namespace corvel::derivedRows {

// Everything the store keeps beside the records so that lists and the sidebar need not read texts:
// word counts, excerpts, tags in the text, counts, and the copies that lists are ordered by. Each
// change of a note keeps them in step (NoteBookkeeping, NoteWriter); here they are made from
// nothing.

enum class WordCounts { recount, keep };

/// Raised whenever one of the rules changes.
inline constexpr int kVersion = 1;

/// Makes all derived rows anew and saves. Throws StoreError.
void rebuild(ViewContext& context, WordCounts wordCounts);

/// Rebuilds when the rows were made by another version of the rules.
void bringUpToDate(ViewContext& context, WordCounts wordCounts);

}  // namespace corvel::derivedRows
