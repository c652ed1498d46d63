#include "library/DerivedRows.h"

#include "library/NoteText.h"
#include "library/TagRows.h"
#include "platform/Text.h"

#include <string>
#include <vector>

namespace corvel::derivedRows {

namespace {

constexpr const char* kVersionName = "derivedVersion";

std::vector<RowId> allNotes(Database& database) {
    std::vector<RowId> rows;
    auto query = database.query("SELECT pk FROM note");
    while (query.next()) {
        rows.push_back(query.integer(0));
    }
    return rows;
}

std::string contentOf(Database& database, RowId row) {
    auto query = database.query("SELECT content FROM noteContent WHERE notePk=?");
    query.bind(row);
    return query.next() ? query.string(0) : std::string();
}

void deriveFromText(Database& database, RowId row, WordCounts wordCounts) {
    const auto content = contentOf(database, row);
    tagRows::markInText(database, row, tagPathsIn(content));
    database.query("UPDATE note SET excerpt=? WHERE pk=?").bind(excerptOf(content), row).run();
    if (wordCounts == WordCounts::keep) return;
    database.query("UPDATE note SET wordCount=? WHERE pk=?")
        .bind(text::wordCount(content), row)
        .run();
}

// Set-based: the counts and copies follow from the rows alone.
constexpr const char* kCountsAndCopies = R"sql(
UPDATE note SET folderCount=(SELECT count(*) FROM noteFolder WHERE notePk=note.pk);
UPDATE noteTag SET (isListed, isPinned, modifiedAt)=
    (SELECT isTrashed=0 AND isArchived=0, note.isPinned, note.modifiedAt FROM note WHERE pk=notePk);
UPDATE noteFolder SET (isListed, isPinned, modifiedAt)=
    (SELECT isTrashed=0 AND isArchived=0, note.isPinned, note.modifiedAt FROM note WHERE pk=notePk);
UPDATE folder SET noteCount=
    (SELECT count(*) FROM noteFolder WHERE folderPk=folder.pk AND isListed=1);
UPDATE tag SET listedCount=
    (SELECT count(*) FROM noteTag WHERE tagPk=tag.pk AND isListed=1 AND isInText=1);
DELETE FROM counter;
INSERT INTO counter SELECT 'allNotes', count(*) FROM note WHERE isTrashed=0 AND isArchived=0;
INSERT INTO counter SELECT 'unfiled', count(*) FROM note
    WHERE isTrashed=0 AND isArchived=0 AND folderCount=0;
INSERT INTO counter SELECT 'localFiles', count(*) FROM note
    WHERE isTrashed=0 AND isArchived=0 AND bookmarkData IS NOT NULL;
INSERT INTO counter SELECT 'archived', count(*) FROM note WHERE isArchived=1 AND isTrashed=0;
INSERT INTO counter SELECT 'trash', count(*) FROM note WHERE isTrashed=1;
)sql";

int storedVersion(Database& database) {
    auto query = database.query("SELECT value FROM counter WHERE name=?");
    query.bind(kVersionName);
    return query.next() ? static_cast<int>(query.integer(0)) : 0;
}

}  // namespace

void rebuild(ViewContext& context, WordCounts wordCounts) {
    context.apply([wordCounts](Database& database) {
        database.execute("UPDATE noteTag SET isInText=0; DELETE FROM noteTag WHERE isAttached=0;");
        for (const RowId row : allNotes(database)) {
            deriveFromText(database, row, wordCounts);
        }
        database.execute(kCountsAndCopies);
        database.query("INSERT INTO counter VALUES(?,?)").bind(kVersionName, kVersion).run();
    });
    context.save();
}

void bringUpToDate(ViewContext& context, WordCounts wordCounts) {
    if (storedVersion(context.database()) != kVersion) rebuild(context, wordCounts);
}

}  // namespace corvel::derivedRows
