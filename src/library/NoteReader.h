#pragma once

#include "library/NoteSummary.h"
#include "model/Note.h"
#include "platform/Database.h"

#include <optional>
#include <vector>

namespace corvel::noteReader {

// Records made from stored rows.

/// The whole note; none when there is no such row.
std::optional<Note> read(Database& database, RowId row);

/// A tag with its sub-tags.
Tag readTag(Database& database, std::int64_t tagKey);

}  // namespace corvel::noteReader
