#include "library/NoteReader.h"

#include "library/RowKeys.h"

namespace corvel::noteReader {

namespace {

std::vector<std::int64_t> keysOf(Database& database, std::string_view sql, std::int64_t parameter) {
    auto query = database.query(sql);
    query.bind(parameter);
    return corvel::keysOf(query);
}

std::vector<Tag> readTags(Database& database, RowId row) {
    std::vector<Tag> tags;
    for (const auto key :
         keysOf(database, "SELECT tagPk FROM noteTag WHERE notePk=? AND isAttached=1", row)) {
        tags.push_back(readTag(database, key));
    }
    return tags;
}

std::vector<Tag> readPlainTags(Database& database, RowId row) {
    std::vector<Tag> tags;
    auto query = database.query(
        "SELECT id, name, fullPath FROM noteTag JOIN tag ON tag.pk=tagPk"
        " WHERE notePk=? AND isAttached=1");
    query.bind(row);
    while (query.next()) {
        tags.push_back({query.uuid(0), query.string(1), query.string(2), {}});
    }
    return tags;
}

std::vector<Uuid> readFolderIDs(Database& database, RowId row) {
    std::vector<Uuid> ids;
    auto query = database.query(
        "SELECT folder.id FROM noteFolder JOIN folder ON folder.pk=folderPk WHERE notePk=?");
    query.bind(row);
    while (query.next()) {
        ids.push_back(query.uuid(0));
    }
    return ids;
}

Note scalarsOf(const Query& query) {
    Note note;
    note.id = query.uuid(0);
    note.title = query.string(1);
    note.content = query.string(2);
    note.createdAt = query.date(3);
    note.modifiedAt = query.date(4);
    note.isPinned = query.boolean(5);
    note.isArchived = query.boolean(6);
    note.isTrashed = query.boolean(7);
    if (!query.isNull(8)) note.trashedAt = query.date(8);
    note.wordCount = static_cast<std::int32_t>(query.integer(9));
    note.syncStatus = syncStatusFromStored(query.integer(10));
    if (!query.isNull(11)) note.sourceFilePath = query.string(11);
    if (!query.isNull(12)) note.bookmarkData = query.blob(12);
    return note;
}

}  // namespace

std::optional<Note> readText(Database& database, RowId row) {
    auto query = database.query(
        "SELECT id, title, content, createdAt, modifiedAt, isPinned, isArchived, isTrashed, "
        "trashedAt,"
        " wordCount, syncStatus, sourceFilePath, bookmarkData"
        " FROM note LEFT JOIN noteContent ON notePk=pk WHERE pk=?");
    query.bind(row);
    if (!query.next()) return std::nullopt;
    return scalarsOf(query);
}

std::optional<Note> read(Database& database, RowId row, Subtags subtags) {
    auto note = readText(database, row);
    if (!note) return std::nullopt;
    note->tags = subtags == Subtags::with ? readTags(database, row) : readPlainTags(database, row);
    note->folderIDs = readFolderIDs(database, row);
    return note;
}

Tag readTag(Database& database, std::int64_t tagKey) {
    Tag tag;
    {
        auto query = database.query("SELECT id, name, fullPath FROM tag WHERE pk=?");
        query.bind(tagKey);
        if (!query.next()) return tag;
        tag = {query.uuid(0), query.string(1), query.string(2), {}};
    }
    for (const auto child :
         keysOf(database, "SELECT pk FROM tag WHERE parentPk=? AND isObject=1", tagKey)) {
        tag.children.push_back(readTag(database, child));
    }
    return tag;
}

}  // namespace corvel::noteReader
