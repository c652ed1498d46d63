#pragma once

#include "library/NoteSummary.h"
#include "library/TagRows.h"
#include "model/Note.h"
#include "platform/Database.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace corvel {

/// What counters, folder and tag counts, and the rows of lists are made from: one note's share in
/// them.
struct NoteState {
    bool exists = false;
    bool isPinned = false;
    bool isArchived = false;
    bool isTrashed = false;
    bool hasBookmark = false;
    Date modifiedAt;
    std::vector<std::int64_t> folders;       ///< keys of the folders that hold it, ascending
    std::vector<std::int64_t> attachedTags;  ///< keys of the tags of its record, ascending
    std::vector<std::int64_t> textTags;      ///< keys of the tags in its text, ascending

    /// Shown in the ordinary lists.
    bool isListed() const { return exists && !isTrashed && !isArchived; }

    /// The share of a record that is about to be stored: without folders and tags.
    static NoteState of(const Note& note);
    static NoteState read(Database& database, RowId row);
    /// From the first columns of a row of these.
    static NoteState fromColumns(const Query& query);
    static constexpr std::string_view kColumns =
        "isPinned, isArchived, isTrashed, bookmarkData IS NOT NULL, modifiedAt";

    void readFolders(Database& database, RowId row);
    void setTags(const std::vector<tagRows::NoteTag>& tags);
};

/// Keeps the counts and lists in step with one note: made before a change of it, finished after.
/// Only what differs is written.
class NoteBookkeeping {
public:
    NoteBookkeeping(Database& database, RowId row);
    /// For a caller that has read the state.
    NoteBookkeeping(Database& database, RowId row, NoteState before);
    const NoteState& before() const { return m_before; }
    /// Reads the state after the change.
    void finish();
    /// For a caller that knows the state after the change.
    void finishWith(const NoteState& after);

private:
    void updateFolderCount(const NoteState& after);

    Database& m_database;
    RowId m_row;
    NoteState m_before;
};

}  // namespace corvel
