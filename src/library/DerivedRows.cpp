#include "library/DerivedRows.h"

#include "library/ListRows.h"
#include "library/NoteText.h"
#include "library/RowKeys.h"
#include "library/TagRows.h"
#include "platform/Text.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel::derivedRows {

namespace {

constexpr const char* kVersionName = "derivedVersion";

std::vector<RowId> allNotes(Database& database) {
    auto query = database.query("SELECT pk FROM note");
    return keysOf(query);
}

std::string contentOf(Database& database, RowId row) {
    auto query = database.query("SELECT content FROM noteContent WHERE notePk=?");
    query.bind(row);
    return query.next() ? query.string(0) : std::string();
}

constexpr std::string_view kForgetText = "UPDATE noteTag SET isInText=0 WHERE notePk=?";
constexpr std::string_view kForgetTextTags = "DELETE FROM noteTag WHERE notePk=? AND isAttached=0";
constexpr std::string_view kFolderCount =
    "UPDATE note SET folderCount=(SELECT count(*) FROM noteFolder WHERE notePk=note.pk)"
    " WHERE pk=?";

void deriveNote(Database& database, RowId row, WordCounts wordCounts) {
    database.query(kForgetTextTags).bind(row).run();
    database.query(kForgetText).bind(row).run();
    const auto content = contentOf(database, row);
    tagRows::markInText(database, row, tagPathsIn(content));
    database.query("UPDATE note SET excerpt=? WHERE pk=?").bind(excerptOf(content), row).run();
    if (wordCounts == WordCounts::recount) {
        database.query("UPDATE note SET wordCount=? WHERE pk=?")
            .bind(text::wordCount(content), row)
            .run();
    }
    database.query(kFolderCount).bind(row).run();
    listRows::addFromRecords(database, row);
}

constexpr const char* kCounts = R"sql(
UPDATE folder SET noteCount=
    (SELECT count(*) FROM folderList WHERE folderPk=folder.pk);
UPDATE tag SET listedCount=0;
UPDATE tag SET listedCount=inText.number
    FROM (SELECT tagPk, count(*) AS number FROM noteTag JOIN note ON note.pk=notePk
          WHERE isInText=1 AND isTrashed=0 AND isArchived=0 GROUP BY tagPk) AS inText
    WHERE inText.tagPk=tag.pk;
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

bool isRebuildDue(ViewContext& context) {
    return storedVersion(context.database()) != kVersion;
}

Rebuild::Rebuild(ViewContext& context, WordCounts wordCounts)
    : m_database(context.database()), m_wordCounts(wordCounts) {
    m_database.execute("BEGIN IMMEDIATE");
    m_notes = allNotes(m_database);
    listRows::clear(m_database);
}

Rebuild::~Rebuild() {
    if (!m_isOpen || !m_database.inTransaction()) return;
    try {
        m_database.execute("ROLLBACK");
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch): closing rolls back as well
    }
}

bool Rebuild::step(std::chrono::milliseconds budget) {
    if (!m_isOpen) return false;
    const auto deadline = std::chrono::steady_clock::now() + budget;
    while (m_done < m_notes.size()) {
        deriveNote(m_database, m_notes[m_done], m_wordCounts);
        ++m_done;
        if (std::chrono::steady_clock::now() >= deadline) return true;
    }
    finish();
    return false;
}

void Rebuild::finish() {
    m_database.execute(kCounts);
    m_database.query("INSERT INTO counter VALUES(?,?)").bind(kVersionName, kVersion).run();
    m_database.execute("COMMIT");
    m_isOpen = false;
}

void rebuild(ViewContext& context, WordCounts wordCounts) {
    Rebuild work(context, wordCounts);
    while (work.step(std::chrono::hours(1))) {
    }
}

void bringUpToDate(ViewContext& context, WordCounts wordCounts) {
    if (isRebuildDue(context)) rebuild(context, wordCounts);
}

}  // namespace corvel::derivedRows
