#include "library/NoteState.h"

#include <algorithm>
#include <iterator>

namespace corvel {

namespace {

std::vector<std::int64_t> readKeys(Database& database, std::string_view sql, RowId row) {
    std::vector<std::int64_t> keys;
    auto query = database.query(sql);
    query.bind(row);
    while (query.next()) {
        keys.push_back(query.integer(0));
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

void addToCounter(Database& database, const char* name, bool before, bool after) {
    if (before == after) return;
    database
        .query(
            "INSERT INTO counter(name, value) VALUES(?,?)"
            " ON CONFLICT(name) DO UPDATE SET value=value+excluded.value")
        .bind(name, after ? 1 : -1)
        .run();
}

using Keys = std::vector<std::int64_t>;

void addToKeys(
    Database& database, std::string_view sql, const Keys& from, const Keys& without, int amount) {
    Keys keys;
    std::set_difference(from.begin(), from.end(), without.begin(), without.end(),
                        std::back_inserter(keys));
    for (const auto key : keys) {
        database.query(sql).bind(amount, key).run();
    }
}

bool isUnfiled(const NoteState& state) {
    return state.isListed() && state.folders.empty();
}

bool isLocalFile(const NoteState& state) {
    return state.isListed() && state.hasBookmark;
}

bool isInArchive(const NoteState& state) {
    return state.exists && state.isArchived && !state.isTrashed;
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
    const NoteState after = NoteState::read(m_database, m_row);
    if (after.exists) updateCopies(after);
    finishWith(after);
}

void NoteBookkeeping::finishWith(const NoteState& after) {
    updateCounters(after);
    updateFolders(after);
    updateTags(after);
    m_before = after;
}

void NoteBookkeeping::updateCounters(const NoteState& after) {
    addToCounter(m_database, "allNotes", m_before.isListed(), after.isListed());
    addToCounter(m_database, "unfiled", isUnfiled(m_before), isUnfiled(after));
    addToCounter(m_database, "localFiles", isLocalFile(m_before), isLocalFile(after));
    addToCounter(m_database, "archived", isInArchive(m_before), isInArchive(after));
    addToCounter(m_database, "trash", m_before.exists && m_before.isTrashed,
                 after.exists && after.isTrashed);
}

void NoteBookkeeping::updateFolders(const NoteState& after) {
    const Keys before = m_before.isListed() ? m_before.folders : Keys{};
    const Keys now = after.isListed() ? after.folders : Keys{};
    constexpr std::string_view kSql = "UPDATE folder SET noteCount=noteCount+? WHERE pk=?";
    addToKeys(m_database, kSql, before, now, -1);
    addToKeys(m_database, kSql, now, before, 1);
    if (after.exists && after.folders.size() != m_before.folders.size()) {
        m_database.query("UPDATE note SET folderCount=? WHERE pk=?")
            .bind(static_cast<std::int64_t>(after.folders.size()), m_row)
            .run();
    }
}

void NoteBookkeeping::updateTags(const NoteState& after) {
    const Keys before = m_before.isListed() ? m_before.textTags : Keys{};
    const Keys now = after.isListed() ? after.textTags : Keys{};
    constexpr std::string_view kSql = "UPDATE tag SET listedCount=listedCount+? WHERE pk=?";
    addToKeys(m_database, kSql, before, now, -1);
    addToKeys(m_database, kSql, now, before, 1);
}

// The rows whose copies already agree are left alone: most changes touch none or all of them.
void NoteBookkeeping::updateCopies(const NoteState& after) {
    for (const std::string_view sql :
         {std::string_view(
              "UPDATE noteTag SET isListed=?1, isPinned=?2, modifiedAt=?3 WHERE notePk=?4"
              " AND (isListed<>?1 OR isPinned<>?2 OR modifiedAt<>?3)"),
          std::string_view(
              "UPDATE noteFolder SET isListed=?1, isPinned=?2, modifiedAt=?3 WHERE notePk=?4"
              " AND (isListed<>?1 OR isPinned<>?2 OR modifiedAt<>?3)")}) {
        m_database.query(sql).bind(after.isListed(), after.isPinned, after.modifiedAt, m_row).run();
    }
}

}  // namespace corvel
