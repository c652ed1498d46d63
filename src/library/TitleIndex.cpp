#include "library/TitleIndex.h"

#include "model/ViewContext.h"

#include <algorithm>
#include <functional>

namespace corvel {

namespace {

/// With more changed notes than this, reading everything anew is cheaper than carrying them.
constexpr std::size_t kMostRecent = 500;
/// Read or folded in one step: a millisecond or two.
constexpr std::size_t kStep = 1000;

}  // namespace

TitleIndex::TitleIndex(ViewContext& context, NoteRepository& notes)
    : m_context(context)
    , m_changes(notes.signalChanged().connect(sigc::mem_fun(*this, &TitleIndex::noteChanged))) {}

void TitleIndex::refresh() {
    auto newest = m_context.database().query("SELECT coalesce(max(pk), 0) FROM note");
    const RowId newestRow = newest.next() ? newest.integer(0) : 0;
    if (m_isRead && newestRow == m_newestRow && m_recent.size() <= kMostRecent) {
        if (m_isRecentStale) readRecent();
        return;
    }
    m_isRead = false;
    while (readAhead()) {
    }
    readRecent();
}

bool TitleIndex::readAhead() {
    if (m_isRead) return false;
    if (!m_reading) return begin();
    if (!m_reading->isComplete) {
        readSome();
        return true;
    }
    const std::size_t end = std::min(m_reading->rows.size(), m_titles.size() + kStep);
    while (m_titles.size() < end) {
        const Row& row = m_reading->rows[m_titles.size()];
        m_titles.append(row.row, row.title);
    }
    if (end < m_reading->rows.size()) return true;
    m_reading.reset();
    m_isRead = true;
    return false;
}

bool TitleIndex::begin() {
    auto newest = m_context.database().query("SELECT coalesce(max(pk), 0) FROM note");
    m_newestRow = newest.next() ? newest.integer(0) : 0;
    m_titles = {};
    m_recent.clear();
    m_hidden.clear();
    m_isRecentStale = true;
    m_reading = Reading{{}, 0, false};
    return true;
}

// In the order of the table, which is read at the speed of the disk, and sorted here: by the index
// on the dates every row would be looked up by itself.
void TitleIndex::readSome() {
    auto query = m_context.database().query(
        "SELECT modifiedAt, pk, title, isTrashed FROM note NOT INDEXED WHERE pk>? ORDER BY pk "
        "LIMIT ?");
    query.bind(m_reading->last, static_cast<std::int64_t>(kStep));
    std::size_t count = 0;
    for (; query.next(); ++count) {
        m_reading->last = query.integer(1);
        if (query.integer(3) != 0) continue;
        m_reading->rows.push_back({query.integer(0), query.integer(1), query.string(2)});
    }
    if (count == kStep) return;
    std::ranges::stable_sort(m_reading->rows, std::ranges::greater(), &Row::modifiedAt);
    m_reading->isComplete = true;
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
    using Kind = NoteChange::Kind;
    // After that many the next refresh reads all anew.
    if ((!m_isRead && !m_reading) || m_recent.size() > kMostRecent) return;
    if (change.kind == Kind::marked) return;
    m_hidden.insert(change.row);
    std::erase_if(m_recent, [&](const auto& entry) { return entry.first == change.row; });
    m_newestRow = std::max(m_newestRow, change.row);
    m_isRecentStale = true;
    if (change.note != nullptr) {
        if (!change.note->isTrashed) m_recent.emplace_back(change.row, change.note->title);
    } else if (change.kind == Kind::restored) {
        auto query = m_context.database().query("SELECT title FROM note WHERE pk=?");
        query.bind(change.row);
        if (query.next()) m_recent.emplace_back(change.row, query.string(0));
    }
}

void TitleIndex::readRecent() {
    m_isRecentStale = false;
    m_recentTitles = {};
    for (auto entry = m_recent.rbegin(); entry != m_recent.rend(); ++entry) {
        m_recentTitles.append(entry->first, entry->second);
    }
}

}  // namespace corvel
