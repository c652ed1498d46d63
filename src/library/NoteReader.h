#pragma once

#include "library/NoteSummary.h"
#include "model/Note.h"
#include "platform/Database.h"

#include <optional>
#include <vector>

namespace corvel::noteReader {

// Records made from stored rows.

/// Whether the tags of a note come with all their sub-tags, which are the same for every note.
enum class Subtags { with, without };

/// The whole note; none when there is no such row.
std::optional<Note> read(Database& database, RowId row, Subtags subtags = Subtags::with);

/// The note without its tags and folders, which many notes in a row need not read.
std::optional<Note> readText(Database& database, RowId row);

/// A tag with its sub-tags.
Tag readTag(Database& database, std::int64_t tagKey);

}  // namespace corvel::noteReader
