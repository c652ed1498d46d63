#include "library/ListRows.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace corvel::listRows {

namespace {

using Keys = std::vector<std::int64_t>;

// Each names its row by the whole key.
struct Statements {
    std::string_view insert;
    std::string_view move;
    std::string_view remove;
};
constexpr Statements kTagList{
    "INSERT INTO tagList(tagPk, isPinned, modifiedAt, notePk) VALUES(?,?,?,?)",
    "UPDATE tagList SET isPinned=?, modifiedAt=?"
    " WHERE tagPk=? AND isPinned=? AND modifiedAt=? AND notePk=?",
    "DELETE FROM tagList WHERE tagPk=? AND isPinned=? AND modifiedAt=? AND notePk=?",
};
constexpr Statements kFolderList{
    "INSERT INTO folderList(folderPk, isPinned, modifiedAt, notePk) VALUES(?,?,?,?)",
    "UPDATE folderList SET isPinned=?, modifiedAt=?"
    " WHERE folderPk=? AND isPinned=? AND modifiedAt=? AND notePk=?",
    "DELETE FROM folderList WHERE folderPk=? AND isPinned=? AND modifiedAt=? AND notePk=?",
};

// Of one note: from its state before to the state after.
class ListChange {
public:
    ListChange(Database& database, RowId note, const NoteState& before, const NoteState& after)
        : m_database(database), m_note(note), m_before(before), m_after(after) {}

    void apply(const Statements& sql, const Keys& keysBefore, const Keys& keysAfter) {
        const Keys none;
        const Keys& old = m_before.isListed() ? keysBefore : none;
        const Keys& wanted = m_after.isListed() ? keysAfter : none;
        for (const auto key : old) {
            if (!std::binary_search(wanted.begin(), wanted.end(), key)) {
                run(sql.remove, key, m_before);
            } else if (isMoved()) {
                m_database.query(sql.move)
                    .bind(m_after.isPinned, m_after.modifiedAt, key, m_before.isPinned,
                          m_before.modifiedAt, m_note)
                    .run();
            }
        }
        for (const auto key : wanted) {
            if (!std::binary_search(old.begin(), old.end(), key)) run(sql.insert, key, m_after);
        }
    }

private:
    bool isMoved() const {
        return m_before.isPinned != m_after.isPinned || m_before.modifiedAt != m_after.modifiedAt;
    }

    void run(std::string_view sql, std::int64_t key, const NoteState& state) {
        m_database.query(sql).bind(key, state.isPinned, state.modifiedAt, m_note).run();
    }

    Database& m_database;
    RowId m_note;
    const NoteState& m_before;
    const NoteState& m_after;
};

}  // namespace

void update(Database& database, RowId note, const NoteState& before, const NoteState& after) {
    ListChange change(database, note, before, after);
    change.apply(kTagList, before.attachedTags, after.attachedTags);
    change.apply(kFolderList, before.folders, after.folders);
}

void addFromRecords(Database& database, RowId note) {
    update(database, note, {}, NoteState::read(database, note));
}

void clear(Database& database) {
    database.execute("DELETE FROM tagList; DELETE FROM folderList");
}

}  // namespace corvel::listRows
