#include "model/Schema.h"

#include <array>
#include <string>

namespace corvel::schema {

namespace {

// Version 1: the records and their relations.
// Delete rules are foreign keys: cascade where a child goes with its parent; join rows always go.
constexpr const char* kRecords = R"sql(
CREATE TABLE note(
    pk INTEGER PRIMARY KEY AUTOINCREMENT,
    id BLOB NOT NULL UNIQUE,
    title TEXT DEFAULT '',
    createdAt INTEGER,
    modifiedAt INTEGER,
    isPinned INTEGER NOT NULL DEFAULT 0,
    isArchived INTEGER NOT NULL DEFAULT 0,
    isTrashed INTEGER NOT NULL DEFAULT 0,
    trashedAt INTEGER,
    wordCount INTEGER NOT NULL DEFAULT 0,
    syncStatus INTEGER NOT NULL DEFAULT 1,
    sortOrder INTEGER NOT NULL DEFAULT 0,
    ckRecordID TEXT,
    ckChangeTag TEXT,
    sourceFilePath TEXT,
    bookmarkData BLOB
);
CREATE TABLE noteContent(
    notePk INTEGER PRIMARY KEY REFERENCES note(pk) ON DELETE CASCADE,
    content TEXT NOT NULL DEFAULT ''
);
CREATE TABLE tag(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    name TEXT NOT NULL DEFAULT '',
    fullPath TEXT NOT NULL DEFAULT '',
    parentPk INTEGER REFERENCES tag(pk) ON DELETE CASCADE
);
CREATE TABLE attachment(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    filename TEXT NOT NULL DEFAULT '',
    mimeType TEXT NOT NULL DEFAULT '',
    data BLOB,
    isInFile INTEGER NOT NULL DEFAULT 0,
    thumbnailData BLOB,
    ckRecordID TEXT,
    notePk INTEGER REFERENCES note(pk) ON DELETE CASCADE
);
CREATE TABLE folder(
    pk INTEGER PRIMARY KEY,
    id BLOB NOT NULL UNIQUE,
    name TEXT NOT NULL DEFAULT '',
    sortOrder INTEGER NOT NULL DEFAULT 0,
    parentPk INTEGER REFERENCES folder(pk) ON DELETE CASCADE
);
CREATE TABLE noteTag(
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    PRIMARY KEY(tagPk, notePk)
) WITHOUT ROWID;
CREATE TABLE noteFolder(
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    PRIMARY KEY(folderPk, notePk)
) WITHOUT ROWID;
CREATE UNIQUE INDEX tagByPath ON tag(fullPath);
CREATE INDEX tagByParent ON tag(parentPk);
CREATE INDEX folderByParent ON folder(parentPk, sortOrder);
CREATE INDEX attachmentByNote ON attachment(notePk);
CREATE INDEX noteTagByNote ON noteTag(notePk);
CREATE INDEX noteFolderByNote ON noteFolder(notePk);
CREATE INDEX noteBySourceFile ON note(sourceFilePath) WHERE sourceFilePath IS NOT NULL;
)sql";

// Version 2: what lists and the sidebar ask of every note, kept beside it. The rows of noteTag and
// noteFolder repeat what their notes are listed by, so that the first rows of a tag or a folder are
// read in order from one index.
constexpr const char* kDerivedRows = R"sql(
ALTER TABLE note ADD COLUMN excerpt TEXT NOT NULL DEFAULT '';
ALTER TABLE note ADD COLUMN folderCount INTEGER NOT NULL DEFAULT 0;
ALTER TABLE folder ADD COLUMN noteCount INTEGER NOT NULL DEFAULT 0;
ALTER TABLE tag ADD COLUMN isObject INTEGER NOT NULL DEFAULT 1;
ALTER TABLE tag ADD COLUMN listedCount INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteTag ADD COLUMN isAttached INTEGER NOT NULL DEFAULT 1;
ALTER TABLE noteTag ADD COLUMN isInText INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteTag ADD COLUMN isListed INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteTag ADD COLUMN isPinned INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteTag ADD COLUMN modifiedAt INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteFolder ADD COLUMN isListed INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteFolder ADD COLUMN isPinned INTEGER NOT NULL DEFAULT 0;
ALTER TABLE noteFolder ADD COLUMN modifiedAt INTEGER NOT NULL DEFAULT 0;
CREATE TABLE counter(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
)sql";

struct ListedPart {
    const char* name;
    const char* where;
};
constexpr std::array kListedParts{
    ListedPart{"All", "isTrashed=0 AND isArchived=0"},
    ListedPart{"Unfiled", "isTrashed=0 AND isArchived=0 AND folderCount=0"},
    ListedPart{"Local", "isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL"},
    ListedPart{"Archived", "isArchived=1 AND isTrashed=0"},
    ListedPart{"Trash", "isTrashed=1"},
};
constexpr std::array kSortKeys{"modifiedAt DESC", "createdAt DESC", "title", "wordCount DESC"};

// One partial index for each fixed filter and each order: its WHERE is the filter's own.
std::string listIndexes() {
    std::string sql;
    for (const auto& part : kListedParts) {
        int number = 0;
        for (const char* key : kSortKeys) {
            sql += std::string("CREATE INDEX list") + part.name + std::to_string(number++) +
                   " ON note(isPinned DESC, " + key + ") WHERE " + part.where + ";\n";
        }
    }
    // What their WHERE names stands in the index too: otherwise SQLite looks at every row itself.
    sql +=
        "CREATE INDEX listTag ON noteTag"
        "(tagPk, isPinned DESC, modifiedAt DESC, notePk, isListed, isAttached)"
        " WHERE isListed=1 AND isAttached=1;\n"
        "CREATE INDEX listFolder ON noteFolder"
        "(folderPk, isPinned DESC, modifiedAt DESC, notePk, isListed) WHERE isListed=1;\n"
        "CREATE INDEX noteByModified ON note(modifiedAt DESC) WHERE isTrashed=0;\n";
    return sql;
}

// Version 3: a note's rows of tags and folders lie together, so that a save writes one page of them
// and not one for each tag, and two trees hold them instead of three: the lists' indexes have all
// rows and so serve the delete rules as well.
constexpr const char* kRowsByNote = R"sql(
DROP INDEX listTag;
DROP INDEX listFolder;
DROP INDEX noteTagByNote;
DROP INDEX noteFolderByNote;
ALTER TABLE noteTag RENAME TO noteTagBefore;
ALTER TABLE noteFolder RENAME TO noteFolderBefore;
CREATE TABLE noteTag(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    isAttached INTEGER NOT NULL DEFAULT 1,
    isInText INTEGER NOT NULL DEFAULT 0,
    isListed INTEGER NOT NULL DEFAULT 0,
    isPinned INTEGER NOT NULL DEFAULT 0,
    modifiedAt INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(notePk, tagPk)
) WITHOUT ROWID;
CREATE TABLE noteFolder(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    isListed INTEGER NOT NULL DEFAULT 0,
    isPinned INTEGER NOT NULL DEFAULT 0,
    modifiedAt INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(notePk, folderPk)
) WITHOUT ROWID;
INSERT INTO noteTag
    SELECT notePk, tagPk, isAttached, isInText, isListed, isPinned, modifiedAt
    FROM noteTagBefore ORDER BY notePk, tagPk;
INSERT INTO noteFolder
    SELECT notePk, folderPk, isListed, isPinned, modifiedAt
    FROM noteFolderBefore ORDER BY notePk, folderPk;
DROP TABLE noteTagBefore;
DROP TABLE noteFolderBefore;
CREATE INDEX listTag ON noteTag
    (tagPk, isListed, isAttached, isPinned DESC, modifiedAt DESC, notePk);
CREATE INDEX listFolder ON noteFolder
    (folderPk, isListed, isPinned DESC, modifiedAt DESC, notePk);
)sql";

// Version 4: an edit moves a note in its lists and changes nothing else of its tags and folders, so
// the lists are tables of their own, of the notes that are listed, and noteTag and noteFolder
// repeat nothing. Notes by date are read from listAll0 and listArchived0. Tags never go in the
// program, so noteTag has no index for them: a foreign key would read all of it.
constexpr const char* kListsApart = R"sql(
CREATE TABLE tagList(
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    isPinned INTEGER NOT NULL,
    modifiedAt INTEGER NOT NULL,
    notePk INTEGER NOT NULL,
    PRIMARY KEY(tagPk, isPinned DESC, modifiedAt DESC, notePk)
) WITHOUT ROWID;
CREATE TABLE folderList(
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    isPinned INTEGER NOT NULL,
    modifiedAt INTEGER NOT NULL,
    notePk INTEGER NOT NULL,
    PRIMARY KEY(folderPk, isPinned DESC, modifiedAt DESC, notePk)
) WITHOUT ROWID;
INSERT INTO tagList
    SELECT tagPk, isPinned, modifiedAt, notePk FROM noteTag INDEXED BY listTag
    WHERE isListed=1 AND isAttached=1
    ORDER BY tagPk, isPinned DESC, modifiedAt DESC, notePk;
INSERT INTO folderList
    SELECT folderPk, isPinned, modifiedAt, notePk FROM noteFolder INDEXED BY listFolder
    WHERE isListed=1
    ORDER BY folderPk, isPinned DESC, modifiedAt DESC, notePk;
DROP INDEX listTag;
DROP INDEX listFolder;
DROP INDEX noteByModified;
ALTER TABLE noteTag RENAME TO noteTagBefore;
ALTER TABLE noteFolder RENAME TO noteFolderBefore;
CREATE TABLE noteTag(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    tagPk INTEGER NOT NULL REFERENCES tag(pk) ON DELETE CASCADE,
    isAttached INTEGER NOT NULL DEFAULT 1,
    isInText INTEGER NOT NULL DEFAULT 0,
    PRIMARY KEY(notePk, tagPk)
) WITHOUT ROWID;
CREATE TABLE noteFolder(
    notePk INTEGER NOT NULL REFERENCES note(pk) ON DELETE CASCADE,
    folderPk INTEGER NOT NULL REFERENCES folder(pk) ON DELETE CASCADE,
    PRIMARY KEY(notePk, folderPk)
) WITHOUT ROWID;
INSERT INTO noteTag SELECT notePk, tagPk, isAttached, isInText FROM noteTagBefore;
INSERT INTO noteFolder SELECT notePk, folderPk FROM noteFolderBefore;
DROP TABLE noteTagBefore;
DROP TABLE noteFolderBefore;
CREATE INDEX noteFolderByFolder ON noteFolder(folderPk);
)sql";

int versionOf(Database& database) {
    auto query = database.query("PRAGMA user_version");
    return query.next() ? static_cast<int>(query.integer(0)) : 0;
}

void step(Database& database, const std::string& sql, int version) {
    database.execute("BEGIN IMMEDIATE");
    try {
        database.execute(sql);
        database.execute("PRAGMA user_version=" + std::to_string(version));
        database.execute("COMMIT");
    } catch (const StoreError&) {
        if (database.inTransaction()) database.execute("ROLLBACK");
        throw;
    }
}

}  // namespace

void migrate(Database& database) {
    const int version = versionOf(database);
    if (version > kVersion) {
        throw StoreError(StoreFault::failed,
                         "the library was written by a newer version of the program (" +
                             std::to_string(version) + ")");
    }
    if (version < 1) step(database, kRecords, 1);
    if (version < 2) step(database, kDerivedRows + listIndexes(), 2);
    if (version < 3) step(database, kRowsByNote, 3);
    if (version < 4) step(database, kListsApart, 4);
}

}  // namespace corvel::schema
