#include "library/TitleIndex.h"

#include "model/ViewContext.h"

#include <algorithm>
#include <functional>

namespace corvel {

namespace {

/// With more changed notes than this, reading everything anew is cheaper than carrying them.
constexpr std::size_t kMostRecent = 500;

}  // namespace

TitleIndex::TitleIndex(ViewContext& context, NoteRepository& notes)
    : m_context(context)
    , m_notes(notes)
    , m_changes(notes.signalChanged().connect(sigc::mem_fun(*this, &TitleIndex::noteChanged))) {}

void TitleIndex::refresh() {
    auto newest = m_context.database().query("SELECT coalesce(max(pk), 0) FROM note");
    const RowId newestRow = newest.next() ? newest.integer(0) : 0;
    if (m_isRead && newestRow == m_newestRow && m_recent.size() <= kMostRecent) {
        if (m_isRecentStale) readRecent();
        return;
    }
    m_titles = {};
    m_recent.clear();
    m_hidden.clear();
    readRecent();
    readAll();
    m_newestRow = newestRow;
    m_isRead = true;
}

// In the order of the table, which is read at the speed of the disk, and sorted here: by the index
// on the dates every row would be looked up by itself.
void TitleIndex::readAll() {
    struct Row {
        std::int64_t modifiedAt;
        RowId row;
        std::string title;
    };
    std::vector<Row> rows;
    auto query = m_context.database().query(
        "SELECT modifiedAt, pk, title FROM note NOT INDEXED WHERE isTrashed=0");
    while (query.next()) {
        rows.push_back({query.integer(0), query.integer(1), query.string(2)});
    }
    std::ranges::stable_sort(rows, std::ranges::greater(), &Row::modifiedAt);
    for (const Row& row : rows) {
        m_titles.append(row.row, row.title);
    }
}

std::vector<RowId> TitleIndex::search(const FuzzyQuery& query, std::size_t limit) const {
    TitleSegment::Hits hits;
    const auto isCurrent = [this](RowId row) { return !m_hidden.contains(row); };
    m_recentTitles.search(
        query, limit, [](RowId) { return true; }, hits);
    m_titles.search(query, limit, isCurrent, hits);
    std::vector<RowId> best;
    for (const auto& rows : hits) {
        for (const RowId row : rows) {
            if (best.size() < limit) best.push_back(row);
        }
    }
    return best;
}

void TitleIndex::noteChanged(const NoteChange& change) {
    if (!m_isRead) return;
    m_hidden.insert(change.row);
    std::erase_if(m_recent, [&](const auto& entry) { return entry.first == change.row; });
    m_newestRow = std::max(m_newestRow, change.row);
    m_isRecentStale = true;
    if (change.kind == NoteChange::Kind::deleted) return;
    const auto stored = change.note == nullptr ? m_notes.fetchNote(change.id) : std::nullopt;
    const Note* note = stored ? &*stored : change.note;
    if (note != nullptr && !note->isTrashed) m_recent.emplace_back(change.row, note->title);
}

void TitleIndex::readRecent() {
    m_isRecentStale = false;
    m_recentTitles = {};
    for (auto entry = m_recent.rbegin(); entry != m_recent.rend(); ++entry) {
        m_recentTitles.append(entry->first, entry->second);
    }
}

}  // namespace corvel
