#include "library/FoldedNoteReader.h"

#include "model/ViewContext.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr std::size_t kPieceSize = 256 * 1024;
// Room for a large text is taken at once, for the worst growth in folding: it costs no memory
// before it is written, and growing would copy megabytes in one step.
constexpr std::size_t kLargeText = 1024 * 1024;
constexpr std::size_t kWorstGrowth = 3;

// Of the notes outside the trash that meet `condition`: the first rows of the four parts that the
// lists' indexes have in order of date, merged.
std::string pageOf(const std::string& condition, const std::string& order) {
    const std::string end = " AND " + condition + " ORDER BY " + order + " LIMIT 64";
    std::string parts;
    for (const char* part : {"listAll0 WHERE isArchived=0 AND isPinned=0",
                             "listAll0 WHERE isArchived=0 AND isPinned=1",
                             "listArchived0 WHERE isArchived=1 AND isPinned=0",
                             "listArchived0 WHERE isArchived=1 AND isPinned=1"}) {
        parts += parts.empty() ? "" : " UNION ALL ";
        parts += "SELECT * FROM (SELECT pk, modifiedAt FROM note INDEXED BY ";
        parts.append(part).append(" AND isTrashed=0").append(end).append(")");
    }
    return "SELECT page.pk, title, page.modifiedAt FROM (" + parts + " ORDER BY " + order +
           " LIMIT 64) AS page JOIN note ON note.pk=page.pk ORDER BY 3 DESC, 1";
}

}  // namespace

FoldedNoteReader::FoldedNoteReader(ViewContext& context) : m_context(context) {}

FoldedNoteReader::Step FoldedNoteReader::step() {
    if (m_read) return readPiece() ? Step::haveNote : Step::working;
    if (m_pagePosition == m_page.size()) {
        if (m_stage == Stage::finished) return Step::finished;
        readPage();
        return Step::working;
    }
    const Row& row = m_page[m_pagePosition++];
    if (!openContent(row.key.row)) return Step::working;
    m_note.key = row.key;
    m_note.text.clear();
    const auto size = static_cast<std::size_t>(sqlite3_blob_bytes(m_blob.get()));
    if (size >= kLargeText)
        m_note.text.reserve(row.title.size() * kWorstGrowth + size * kWorstGrowth);
    text::foldForSearch(row.title, m_note.text);
    m_note.text.push_back(FoldedNote::kEnd);
    m_read = 0;
    return readPiece() ? Step::haveNote : Step::working;
}

void FoldedNoteReader::pause() {
    if (!m_read) m_blob.reset();
}

void FoldedNoteReader::readPage() {
    static const struct {
        std::string sameDate = pageOf("modifiedAt=?1 AND pk>?2", "pk");
        std::string older = pageOf("modifiedAt<?1", "modifiedAt DESC, pk");
        std::string undated = pageOf("modifiedAt IS NULL AND pk>?1", "pk");
    } kSql;
    m_page.clear();
    m_pagePosition = 0;
    switch (m_stage) {
        case Stage::sameDate:
            if (!readRows(kSql.sameDate, m_cursor.modifiedAt, m_cursor.row)) m_stage = Stage::older;
            break;
        case Stage::older:
            if (readRows(kSql.older, m_cursor.modifiedAt)) {
                m_stage = Stage::sameDate;
            } else {
                m_stage = Stage::undated;
                m_cursor.row = NoteKey::first().row;
            }
            break;
        case Stage::undated:
            if (!readRows(kSql.undated, m_cursor.row)) m_stage = Stage::finished;
            break;
        case Stage::finished:
            break;
    }
}

template <typename... Values>
bool FoldedNoteReader::readRows(std::string_view sql, const Values&... values) {
    auto rows = m_context.database().query(sql);
    rows.bind(values...);
    while (rows.next()) {
        const auto modifiedAt = rows.isNull(2) ? NoteKey::kNoDate : rows.integer(2);
        m_page.push_back({{modifiedAt, rows.integer(0)}, rows.string(1)});
    }
    if (m_page.empty()) return false;
    m_cursor = m_page.back().key;
    return true;
}

// False when the note has no content any more.
bool FoldedNoteReader::openContent(RowId row) {
    if (m_blob && sqlite3_blob_reopen(m_blob.get(), row) == SQLITE_OK) return true;
    // A handle that failed once can only be closed.
    m_blob.reset();
    sqlite3_blob* blob = nullptr;
    sqlite3_blob_open(m_context.database().handle(), "main", "noteContent", "content", row, 0,
                      &blob);
    m_blob.reset(blob);
    return blob != nullptr;
}

// True when the note is complete.
bool FoldedNoteReader::readPiece() {
    const auto size = static_cast<std::size_t>(sqlite3_blob_bytes(m_blob.get()));
    const std::size_t length = std::min(kPieceSize, size - std::min(size, *m_read));
    m_piece.resize(length);
    const int result = sqlite3_blob_read(m_blob.get(), m_piece.data(), static_cast<int>(length),
                                         static_cast<int>(*m_read));
    if (result != SQLITE_OK) {
        m_blob.reset();
        m_read.reset();
        --m_pagePosition;
        // The note changed between two pieces, or a change was rolled back: read again.
        if ((result & 0xFF) == SQLITE_ABORT) return false;
        throw StoreError(StoreFault::failed, "the text of a note cannot be read for search");
    }
    const bool isLast = *m_read + length == size;
    std::string_view piece = m_piece;
    if (!isLast) piece = text::prefixByBytes(piece, length - 4);
    text::foldForSearch(piece, m_note.text);
    *m_read += piece.size();
    if (!isLast) return false;
    m_note.text.push_back(FoldedNote::kEnd);
    m_read.reset();
    return true;
}

}  // namespace corvel
