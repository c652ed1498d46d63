#include "library/NoteState.h"

#include "library/CountChanges.h"
#include "library/ListRows.h"
#include "library/RowKeys.h"

#include <string>
#include <utility>

namespace corvel {

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

NoteState NoteState::fromColumns(const Query& query) {
    NoteState state;
    state.exists = true;
    state.isPinned = query.boolean(0);
    state.isArchived = query.boolean(1);
    state.isTrashed = query.boolean(2);
    state.hasBookmark = query.boolean(3);
    state.modifiedAt = query.date(4);
    return state;
}

NoteState NoteState::read(Database& database, RowId row) {
    static const std::string kSql = "SELECT " + std::string(kColumns) + " FROM note WHERE pk=?";
    NoteState state;
    {
        auto query = database.query(kSql);
        query.bind(row);
        if (!query.next()) return state;
        state = fromColumns(query);
    }
    state.readFolders(database, row);
    state.setTags(tagRows::tagsOf(database, row));
    return state;
}

void NoteState::readFolders(Database& database, RowId row) {
    auto query = database.query("SELECT folderPk FROM noteFolder WHERE notePk=? ORDER BY folderPk");
    query.bind(row);
    folders = keysOf(query);
}

void NoteState::setTags(const std::vector<tagRows::NoteTag>& tags) {
    for (const auto& tag : tags) {
        if (tag.isAttached) attachedTags.push_back(tag.key);
        if (tag.isInText) textTags.push_back(tag.key);
    }
}

NoteBookkeeping::NoteBookkeeping(Database& database, RowId row)
    : NoteBookkeeping(database, row, NoteState::read(database, row)) {}

NoteBookkeeping::NoteBookkeeping(Database& database, RowId row, NoteState before)
    : m_database(database), m_row(row), m_before(std::move(before)) {}

void NoteBookkeeping::finish() {
    finishWith(NoteState::read(m_database, m_row));
}

void NoteBookkeeping::finishWith(const NoteState& after) {
    if (after.exists) updateFolderCount(after);
    listRows::update(m_database, m_row, m_before, after);
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

}  // namespace corvel
