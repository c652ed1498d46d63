#include "library/NoteState.h"

#include "library/CountChanges.h"
#include "library/RowKeys.h"

#include <algorithm>
#include <iterator>

namespace corvel {

namespace {

std::vector<std::int64_t> readKeys(Database& database, std::string_view sql, RowId row) {
    auto query = database.query(sql);
    query.bind(row);
    auto keys = keysOf(query);
    std::sort(keys.begin(), keys.end());
    return keys;
}

}  // namespace

NoteState NoteState::of(const Note& note) {
    NoteState state;
    state.exists = true;
    state.isPinned = note.isPinned;
    state.isArchived = note.isArchived;
    state.isTrashed = note.isTrashed;
    state.hasBookmark = note.bookmarkData.has_value();
    state.modifiedAt = note.modifiedAt;
    return state;
}

NoteState NoteState::read(Database& database, RowId row) {
    NoteState state;
    {
        auto query = database.query(
            "SELECT isPinned, isArchived, isTrashed, bookmarkData IS NOT NULL, modifiedAt"
            " FROM note WHERE pk=?");
        query.bind(row);
        if (!query.next()) return state;
        state.exists = true;
        state.isPinned = query.boolean(0);
        state.isArchived = query.boolean(1);
        state.isTrashed = query.boolean(2);
        state.hasBookmark = query.boolean(3);
        state.modifiedAt = query.date(4);
    }
    state.readLinks(database, row);
    return state;
}

void NoteState::readLinks(Database& database, RowId row) {
    folders = readKeys(database, "SELECT folderPk FROM noteFolder WHERE notePk=?", row);
    textTags = readKeys(database, "SELECT tagPk FROM noteTag WHERE notePk=? AND isInText=1", row);
}

NoteBookkeeping::NoteBookkeeping(Database& database, RowId row)
    : m_database(database), m_row(row), m_before(NoteState::read(database, row)) {}

void NoteBookkeeping::finish() {
    finishWith(NoteState::read(m_database, m_row));
}

void NoteBookkeeping::finishWith(const NoteState& after) {
    if (after.exists) {
        updateCopies(after);
        updateFolderCount(after);
    }
    CountChanges changes;
    changes.add(m_before, after);
    changes.write(m_database);
}

void NoteBookkeeping::updateFolderCount(const NoteState& after) {
    if (after.folders.size() == m_before.folders.size()) return;
    m_database.query("UPDATE note SET folderCount=? WHERE pk=?")
        .bind(static_cast<std::int64_t>(after.folders.size()), m_row)
        .run();
}

// The rows whose copies already agree are left alone: most changes touch none or all of them.
void NoteBookkeeping::updateCopies(const NoteState& after) {
    const auto update = [&](std::string_view sql) {
        m_database.query(sql).bind(after.isListed(), after.isPinned, after.modifiedAt, m_row).run();
    };
    update(
        "UPDATE noteTag SET isListed=?1, isPinned=?2, modifiedAt=?3 WHERE notePk=?4"
        " AND (isListed<>?1 OR isPinned<>?2 OR modifiedAt<>?3)");
    if (after.folders.empty()) return;
    update(
        "UPDATE noteFolder SET isListed=?1, isPinned=?2, modifiedAt=?3 WHERE notePk=?4"
        " AND (isListed<>?1 OR isPinned<>?2 OR modifiedAt<>?3)");
}

}  // namespace corvel
