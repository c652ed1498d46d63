#include "library/SearchSweeps.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

using Clock = std::chrono::steady_clock;

// Notes are searched together up to about this size; then the clock is asked.
constexpr std::size_t kRunSize = 256 * 1024;

}  // namespace

IndexSweep::IndexSweep(std::shared_ptr<const IndexContent> content, TermFinder finder)
    : m_content(std::move(content)), m_finder(std::move(finder)), m_version(m_content->version()) {}

/// One call of `next`: the chunks and the recent notes as two streams in one order.
class IndexSweep::Run {
public:
    Run(const IndexSweep& sweep, std::size_t limit, Clock::time_point deadline)
        : m_content(*sweep.m_content)
        , m_finder(sweep.m_finder)
        , m_limit(limit)
        , m_deadline(deadline)
        , m_recent(m_content.recent().lower_bound(sweep.m_frontier)) {
        const auto& chunks = m_content.chunks();
        const auto chunk = std::partition_point(
            chunks.begin(), chunks.end(),
            [&](const IndexChunk& each) { return each.lastKey() < sweep.m_frontier; });
        m_chunk = static_cast<std::size_t>(chunk - chunks.begin());
        if (chunk != chunks.end()) m_entry = chunk->seek(sweep.m_frontier);
    }

    /// True when all is searched; else `frontier` tells where to go on.
    bool go() {
        while (takeRecent()) {
            if (isAtEnd()) return true;
            searchSome();
            if (m_isFull || Clock::now() >= m_deadline) break;
        }
        return false;
    }

    NoteKey frontier() const {
        if (m_isFull) return m_last.next();
        NoteKey key = mainKey();
        if (m_recent != m_content.recent().end()) key = std::min(key, m_recent->first);
        return key;
    }
    std::vector<RowId> takeHits() { return std::move(m_hits); }

private:
    static constexpr NoteKey kBehindAll{NoteKey::kNoDate, std::numeric_limits<RowId>::max()};

    bool isAtEnd() const { return m_chunk == m_content.chunks().size(); }
    NoteKey mainKey() const {
        return isAtEnd() ? kBehindAll : m_content.chunks()[m_chunk].keyAt(m_entry);
    }

    void take(NoteKey key) {
        m_hits.push_back(key.row);
        m_last = key;
        m_isFull = m_hits.size() >= m_limit;
    }

    // Takes the recent notes before the place in the chunks; false when that has to stop.
    bool takeRecent() {
        const NoteKey bound = mainKey();
        while (m_recent != m_content.recent().end() && m_recent->first < bound) {
            if (m_finder.hasAll(m_recent->second)) take(m_recent->first);
            ++m_recent;
            if (m_isFull || Clock::now() >= m_deadline) return false;
        }
        return !m_isFull;
    }

    // Searches some notes of one chunk up to the first place of the longest term.
    void searchSome() {
        const IndexChunk& chunk = m_content.chunks()[m_chunk];
        const std::size_t begin = chunk.beginOf(m_entry);
        const std::size_t last = chunk.entryAt(std::min(begin + kRunSize, chunk.text().size()) - 1);
        const std::size_t found = m_finder.findIn(chunk.text().substr(0, chunk.endOf(last)), begin);
        if (found == std::string_view::npos) {
            moveTo(last + 1);
            return;
        }
        m_entry = chunk.entryAt(found);
        const NoteKey key = chunk.keyAt(m_entry);
        const bool isValid =
            !m_content.isHidden(key.row) && m_finder.hasOthers(chunk.textAt(m_entry));
        if (!isValid || (takeRecent() && !m_isFull)) {
            if (isValid) take(key);
            moveTo(m_entry + 1);
        }
    }

    void moveTo(std::size_t entry) {
        m_entry = entry;
        if (m_entry < m_content.chunks()[m_chunk].noteCount()) return;
        m_entry = 0;
        ++m_chunk;
    }

    const IndexContent& m_content;
    const TermFinder& m_finder;
    std::size_t m_limit;
    Clock::time_point m_deadline;
    IndexContent::Recent::const_iterator m_recent;
    std::size_t m_chunk = 0;
    std::size_t m_entry = 0;
    std::vector<RowId> m_hits;
    NoteKey m_last;
    bool m_isFull = false;
};

std::vector<RowId> IndexSweep::next(std::size_t limit, std::chrono::milliseconds budget) {
    if (m_isFinished || limit == 0) return {};
    if (isStale()) {
        m_isFinished = true;
        return {};
    }
    Run run(*this, limit, Clock::now() + budget);
    m_isFinished = run.go();
    m_frontier = run.frontier();
    return run.takeHits();
}

StoreSweep::StoreSweep(ViewContext& context,
                       std::shared_ptr<const IndexContent> content,
                       TermFinder finder)
    : m_reader(context)
    , m_content(std::move(content))
    , m_finder(std::move(finder))
    , m_version(m_content->version()) {}

std::vector<RowId> StoreSweep::next(std::size_t limit, std::chrono::milliseconds budget) {
    std::vector<RowId> hits;
    if (m_isFinished || limit == 0) return hits;
    const auto deadline = Clock::now() + budget;
    m_isFinished = isStale();
    while (!m_isFinished && hits.size() < limit) {
        const auto step = m_reader.step();
        m_isFinished = step == FoldedNoteReader::Step::finished;
        const bool isHit =
            step == FoldedNoteReader::Step::haveNote && m_finder.hasAll(m_reader.note().text);
        if (isHit) hits.push_back(m_reader.note().key.row);
        if (Clock::now() >= deadline) break;
    }
    m_reader.pause();
    return hits;
}

}  // namespace corvel
