#pragma once

#include "library/NoteRepository.h"
#include "library/TitleSegment.h"
#include "platform/ScopedConnection.h"

#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvel {

class ViewContext;

/// The folded titles of all notes outside the trash, newest modification first, for a switcher.
/// Read from the store at first use, then kept in step.
class TitleIndex {
public:
    TitleIndex(ViewContext& context, NoteRepository& notes);  // both must outlive the index

    /// To be called before a run of searches: reads what was added unannounced, or everything at
    /// first, and takes up what changed. Throws StoreError.
    void refresh();

    /// The best hits; an empty query gives the newest notes.
    std::vector<RowId> search(const FuzzyQuery& query, std::size_t limit) const;

    const TitleSegment& titles() const { return m_titles; }

private:
    void noteChanged(const NoteChange& change);
    void readRecent();
    void readAll();

    ViewContext& m_context;
    NoteRepository& m_notes;
    bool m_isRead = false;
    RowId m_newestRow = 0;
    TitleSegment m_titles;
    std::vector<std::pair<RowId, std::string>> m_recent;  // changed since, the last at the end
    TitleSegment m_recentTitles;
    bool m_isRecentStale = false;
    std::unordered_set<RowId> m_hidden;  // rows whose title in m_titles no longer holds
    ScopedConnection m_changes;
};

}  // namespace corvel
