#pragma once

#include "library/NoteSummary.h"
#include "model/ViewContext.h"

#include <chrono>
#include <cstddef>
#include <vector>

namespace corvel::derivedRows {

// Everything the store keeps beside the records so that lists and the sidebar need not read texts:
// word counts, excerpts, tags in the text, counts, and the lists of tags and folders. Each change
// of a note keeps them in step (NoteBookkeeping, NoteWriter); here they are made from nothing.

enum class WordCounts { recount, keep };

/// Raised whenever one of the rules changes.
inline constexpr int kVersion = 1;

/// True when the rows were made by another version of the rules.
bool isRebuildDue(ViewContext& context);

/// Makes all derived rows anew, some notes at a step. All is one transaction: what ends before its
/// time, by a crash too, leaves the rows as they were. Nothing else may use the store meanwhile.
class Rebuild {
public:
    /// The context must have no unsaved changes. Throws StoreError, as `step` does.
    Rebuild(ViewContext& context, WordCounts wordCounts);
    Rebuild(const Rebuild&) = delete;
    Rebuild& operator=(const Rebuild&) = delete;
    ~Rebuild();

    /// Works for about `budget`; false when all is done and committed. A note of 50 MB takes a
    /// second, and so may the counts at the end.
    bool step(std::chrono::milliseconds budget);
    std::size_t doneCount() const { return m_done; }
    std::size_t noteCount() const { return m_notes.size(); }

private:
    void finish();

    Database& m_database;
    WordCounts m_wordCounts;
    std::vector<RowId> m_notes;
    std::size_t m_done = 0;
    bool m_isOpen = true;
};

/// A rebuild in one go.
void rebuild(ViewContext& context, WordCounts wordCounts);

/// Rebuilds in one go when that is due.
void bringUpToDate(ViewContext& context, WordCounts wordCounts);

}  // namespace corvel::derivedRows
