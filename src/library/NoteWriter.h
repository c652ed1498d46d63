#pragma once

#include "library/NoteSummary.h"
#include "model/Note.h"
#include "platform/Database.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// What is derived once from a note's text when it is written.
struct DerivedText {
    std::vector<std::string> tagPaths;
    std::string excerpt;
    std::int32_t wordCount = 0;

    static DerivedText of(const std::string& content);
};

/// The rows of one note. Each function runs inside a change of the view context and keeps counts
/// and lists in step.
namespace noteWriter {

std::optional<RowId> rowOf(Database& database, const Uuid& id);
void insert(Database& database, const Note& note, const DerivedText& derived);

/// A record that is to be inserted, with what its text says.
struct PreparedNote {
    Note note;
    DerivedText derived;
};
/// Gives the same rows as inserting one after the other.
void insert(Database& database, const std::vector<std::shared_ptr<const PreparedNote>>& notes);
/// Copies the record into its row, if it has one, without `createdAt`, pin, archive and folders.
void update(Database& database, const Note& note, const DerivedText& derived);
/// Runs one statement whose only parameter is the note's key.
void updateState(Database& database, RowId row, std::string_view sql);
void moveToTrash(Database& database, RowId row, Date now);
void remove(Database& database, RowId row);

}  // namespace noteWriter
}  // namespace corvel
