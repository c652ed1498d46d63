#pragma once

#include "library/NoteSummary.h"
#include "model/Note.h"
#include "platform/Database.h"

#include <cstdint>
#include <vector>

namespace corvel {

/// What counters, folder and tag counts, and the copies in noteTag and noteFolder are made from:
/// one note's share in them.
struct NoteState {
    bool exists = false;
    bool isPinned = false;
    bool isArchived = false;
    bool isTrashed = false;
    bool hasBookmark = false;
    Date modifiedAt;
    std::vector<std::int64_t> folders;   ///< keys of the folders that hold it, ascending
    std::vector<std::int64_t> textTags;  ///< keys of the tags in its text, ascending

    /// Shown in the ordinary lists.
    bool isListed() const { return exists && !isTrashed && !isArchived; }

    /// The share of a record that is about to be stored: without folders and tags.
    static NoteState of(const Note& note);
    static NoteState read(Database& database, RowId row);
    void readLinks(Database& database, RowId row);
    void readFolders(Database& database, RowId row);
};

class CountChanges;

/// Keeps the counts and copies in step with one note: made before a change of it, finished after.
/// Only what differs is written.
class NoteBookkeeping {
public:
    /// Says that the row was inserted just now and has no share in anything yet.
    struct NewNote {};

    NoteBookkeeping(Database& database, RowId row);
    NoteBookkeeping(Database& database, RowId row, NewNote) : m_database(database), m_row(row) {}
    /// Reads the state after the change.
    void finish();
    /// For a caller that knows the state after the change and has written the copies itself.
    void finishWith(const NoteState& after);
    /// The same for one of many notes: its counts go to `changes`, which the caller writes.
    void finishWith(const NoteState& after, CountChanges& changes);

private:
    void updateCopies(const NoteState& after);

    Database& m_database;
    RowId m_row;
    NoteState m_before;
};

}  // namespace corvel
