#pragma once

#include "library/NoteRepository.h"
#include "library/TitleSegment.h"
#include "platform/ScopedConnection.h"

#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvel {

class ViewContext;

/// The folded titles of all notes outside the trash, newest modification first, for a switcher.
/// Read from the store in idle time or at first use, then kept in step.
class TitleIndex {
public:
    TitleIndex(ViewContext& context, NoteRepository& notes);  // both must outlive the index

    /// To be called before a run of searches: reads what was added unannounced, or everything at
    /// first, and takes up what changed. Throws StoreError.
    void refresh();

    /// Reads a little of what the first `refresh` would read. True while more is left. Throws
    /// StoreError.
    bool readAhead();

    /// The best hits; an empty query gives the newest notes.
    std::vector<RowId> search(const FuzzyQuery& query, std::size_t limit) const;

    const TitleSegment& titles() const { return m_titles; }

private:
    struct Row {
        std::int64_t modifiedAt;
        RowId row;
        std::string title;
    };
    /// What is read so far, newest first once it is complete; changes meanwhile are in `m_recent`.
    struct Reading {
        std::vector<Row> rows;
        RowId last;
        bool isComplete;
    };

    bool begin();
    void noteChanged(const NoteChange& change);
    void readRecent();
    void readSome();

    ViewContext& m_context;
    bool m_isRead = false;
    std::optional<Reading> m_reading;
    RowId m_newestRow = 0;
    TitleSegment m_titles;
    std::vector<std::pair<RowId, std::string>> m_recent;  // changed since, the last at the end
    TitleSegment m_recentTitles;
    bool m_isRecentStale = false;
    std::unordered_set<RowId> m_hidden;  // rows whose title in m_titles no longer holds
    ScopedConnection m_changes;
};

}  // namespace corvel
