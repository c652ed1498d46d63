#include "library/NoteWriter.h"

#include "library/CountChanges.h"
#include "library/ListRows.h"
#include "library/NoteState.h"
#include "library/NoteText.h"
#include "library/TagRows.h"
#include "platform/Text.h"

#include <algorithm>
#include <utility>

namespace corvel {

DerivedText DerivedText::of(const std::string& content) {
    return {tagPathsIn(content), excerptOf(content), text::wordCount(content)};
}

namespace noteWriter {

namespace {

// With the count of its folders from the start: a count that changes moves the row between lists.
RowId insertNoteRow(Database& database,
                    const Note& note,
                    const DerivedText& derived,
                    std::size_t folderCount) {
    database
        .query(
            "INSERT INTO note(id, title, createdAt, modifiedAt, isPinned, isArchived, isTrashed,"
            " trashedAt, wordCount, syncStatus, sourceFilePath, bookmarkData, excerpt, folderCount)"
            " VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?)")
        .bind(note.id, note.title, note.createdAt, note.modifiedAt, note.isPinned, note.isArchived,
              note.isTrashed, note.trashedAt, derived.wordCount, static_cast<int>(note.syncStatus),
              note.sourceFilePath, note.bookmarkData, derived.excerpt,
              static_cast<std::int64_t>(folderCount))
        .run();
    return database.lastInsertedRow();
}

void insertContent(Database& database, RowId row, const std::string& content) {
    database.query("INSERT INTO noteContent(notePk, content) VALUES(?,?)").bind(row, content).run();
}

void writeContent(Database& database, RowId row, const std::string& content) {
    const int changed =
        database.query("UPDATE noteContent SET content=? WHERE notePk=?").bind(content, row).run();
    if (changed == 0) insertContent(database, row, content);
}

// Lists of a tag rely on it: a note carries every prefix of its tags.
std::vector<std::string> pathsWithPrefixes(const std::vector<Tag>& tags) {
    std::vector<std::string> paths;
    for (const Tag& tag : tags) {
        for (auto end = tag.fullPath.find('/'); end != std::string::npos;
             end = tag.fullPath.find('/', end + 1)) {
            paths.push_back(tag.fullPath.substr(0, end));
        }
        paths.push_back(tag.fullPath);
    }
    return paths;
}

// Ascending; those that are gone are left out.
std::vector<std::int64_t> folderKeys(Database& database, const std::vector<Uuid>& ids) {
    std::vector<std::int64_t> keys;
    for (const Uuid& id : ids) {
        auto query = database.query("SELECT pk FROM folder WHERE id=?");
        query.bind(id);
        if (query.next()) keys.push_back(query.integer(0));
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

void fileInFolders(Database& database, RowId row, const std::vector<std::int64_t>& folders) {
    for (const auto folder : folders) {
        database.query("INSERT INTO noteFolder(notePk, folderPk) VALUES(?,?)")
            .bind(row, folder)
            .run();
    }
}

std::vector<std::int64_t> unionOf(std::vector<std::int64_t> keys,
                                  const std::vector<std::int64_t>& more) {
    keys.insert(keys.end(), more.begin(), more.end());
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

void insertOne(Database& database,
               const Note& note,
               const DerivedText& derived,
               tagRows::TagKeys& tags,
               CountChanges& changes) {
    using tagRows::Source;
    NoteState state = NoteState::of(note);
    state.folders = folderKeys(database, note.folderIDs);
    const RowId row = insertNoteRow(database, note, derived, state.folders.size());
    insertContent(database, row, note.content);
    auto recordTags =
        tagRows::attach(database, row, pathsWithPrefixes(note.tags), Source::elsewhere, tags);
    state.textTags = tagRows::attach(database, row, derived.tagPaths, Source::text, tags);
    std::sort(state.textTags.begin(), state.textTags.end());
    state.attachedTags = unionOf(std::move(recordTags), state.textTags);
    fileInFolders(database, row, state.folders);
    listRows::update(database, row, {}, state);
    changes.add({}, state);
}

struct RowChanges {
    bool title = false;
    bool wordCount = false;
    bool place = false;  ///< trash and linked file, which say what lists it is in
};

struct StoredNote {
    RowId row = 0;
    NoteState state;
    RowChanges changes;  ///< what an update with the record is going to change
    std::vector<tagRows::NoteTag> tags;
};

std::optional<StoredNote> readRow(Database& database,
                                  const Note& note,
                                  const DerivedText& derived) {
    static const std::string kSql =
        "SELECT " + std::string(NoteState::kColumns) +
        ", pk, title IS NOT ?, wordCount<>?, isTrashed<>? OR trashedAt IS NOT ?"
        " OR sourceFilePath IS NOT ? OR bookmarkData IS NOT ? FROM note WHERE id=?";
    auto query = database.query(kSql);
    query.bind(note.title, derived.wordCount, note.isTrashed, note.trashedAt, note.sourceFilePath,
               note.bookmarkData, note.id);
    if (!query.next()) return std::nullopt;
    return StoredNote{query.integer(5),
                      NoteState::fromColumns(query),
                      {query.boolean(6), query.boolean(7), query.boolean(8)},
                      {}};
}

std::optional<StoredNote> readStored(Database& database,
                                     const Note& note,
                                     const DerivedText& derived) {
    auto stored = readRow(database, note, derived);
    if (!stored) return stored;
    stored->state.readFolders(database, stored->row);
    stored->tags = tagRows::tagsOf(database, stored->row);
    stored->state.setTags(stored->tags);
    return stored;
}

// Several statements, each only for what differs: an update opens every index of what it names.
void updateNoteRow(Database& database,
                   const StoredNote& stored,
                   const Note& note,
                   const DerivedText& derived) {
    const RowId row = stored.row;
    const RowChanges& changes = stored.changes;
    database.query("UPDATE note SET modifiedAt=?, syncStatus=1, excerpt=? WHERE pk=?")
        .bind(note.modifiedAt, derived.excerpt, row)
        .run();
    if (changes.wordCount) {
        database.query("UPDATE note SET wordCount=? WHERE pk=?").bind(derived.wordCount, row).run();
    }
    if (changes.title) {
        database.query("UPDATE note SET title=? WHERE pk=?").bind(note.title, row).run();
    }
    if (changes.place) {
        database
            .query(
                "UPDATE note SET isTrashed=?, trashedAt=?, sourceFilePath=?, bookmarkData=?"
                " WHERE pk=?")
            .bind(note.isTrashed, note.trashedAt, note.sourceFilePath, note.bookmarkData, row)
            .run();
    }
}

}  // namespace

std::optional<RowId> rowOf(Database& database, const Uuid& id) {
    auto query = database.query("SELECT pk FROM note WHERE id=?");
    query.bind(id);
    if (!query.next()) return std::nullopt;
    return query.integer(0);
}

void insert(Database& database, const Note& note, const DerivedText& derived) {
    tagRows::TagKeys tags(database);
    CountChanges changes;
    insertOne(database, note, derived, tags, changes);
    changes.write(database);
}

void insert(Database& database, const std::vector<std::shared_ptr<const PreparedNote>>& notes) {
    tagRows::TagKeys tags(database);
    CountChanges changes;
    for (const auto& each : notes) {
        insertOne(database, each->note, each->derived, tags, changes);
    }
    changes.write(database);
}

void update(Database& database, const Note& note, const DerivedText& derived) {
    const auto stored = readStored(database, note, derived);
    if (!stored) return;
    NoteBookkeeping bookkeeping(database, stored->row, stored->state);
    updateNoteRow(database, *stored, note, derived);
    writeContent(database, stored->row, note.content);
    NoteState after = stored->state;
    after.isTrashed = note.isTrashed;
    after.hasBookmark = note.bookmarkData.has_value();
    after.modifiedAt = note.modifiedAt;
    after.textTags = tagRows::replace(database, stored->row, stored->tags, derived.tagPaths);
    after.attachedTags = after.textTags;
    bookkeeping.finishWith(after);
}

void updateState(Database& database, RowId row, std::string_view sql) {
    NoteBookkeeping bookkeeping(database, row);
    database.query(sql).bind(row).run();
    bookkeeping.finish();
}

void moveToTrash(Database& database, RowId row, Date now) {
    NoteBookkeeping bookkeeping(database, row);
    database.query("UPDATE note SET isTrashed=1, trashedAt=?, syncStatus=1 WHERE pk=?")
        .bind(now, row)
        .run();
    bookkeeping.finish();
}

void remove(Database& database, RowId row) {
    updateState(database, row, "DELETE FROM note WHERE pk=?");
}

}  // namespace noteWriter
}  // namespace corvel
