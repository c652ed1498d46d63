#pragma once

#include "library/NoteSummary.h"
#include "platform/Date.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

class FoldedNoteReader;
class IndexContent;
class TermFinder;
class ViewContext;

/// The folded text of title and content of every note outside the trash, in memory, for "contains,
/// ignoring case and diacritics" as one types. See docs/search.md.
class SearchIndex {
public:
    explicit SearchIndex(ViewContext& context);  // must outlive the index and its sweeps
    ~SearchIndex();

    /// Reads and folds notes for about `budget`; false when all is read. Also tidies recent edits
    /// into the main text. Called from the loop's idle time. Throws StoreError; the next call goes
    /// on where this one stopped.
    bool work(std::chrono::milliseconds budget);
    /// True once every note is in; until then a search reads the store itself.
    bool isReady() const;

    /// To be called after the store has taken the change. A trashed note is removed.
    void noteChanged(RowId row, std::string_view title, std::string_view content, Date modifiedAt);
    void noteRemoved(RowId row);

    /// One query's run over the notes, newest modification first, equal ones by row. A change of a
    /// note ends it: `next` then gives nothing more, `isStale` and `isFinished` are true. It may
    /// outlive the index, not the store.
    class Sweep {
    public:
        virtual ~Sweep() = default;
        /// The next hits, at most `limit`, found within about `budget`, maybe none yet. Throws
        /// StoreError.
        virtual std::vector<RowId> next(std::size_t limit, std::chrono::milliseconds budget) = 0;
        /// True when no more follow.
        virtual bool isFinished() const = 0;
        virtual bool isStale() const = 0;
    };
    /// A query that folds to nothing (empty, or marks alone) is contained in every note.
    std::unique_ptr<Sweep> search(std::string_view query) const;
    /// The notes that contain every one of the terms, somewhere.
    std::unique_ptr<Sweep> searchAll(const std::vector<std::string>& terms) const;
    /// The same answers, read from the store whether or not the index is ready.
    std::unique_ptr<Sweep> storeScan(std::string_view query) const;

    std::size_t memoryInBytes() const;

private:
    std::unique_ptr<Sweep> sweep(TermFinder finder) const;

    ViewContext& m_context;
    std::shared_ptr<IndexContent> m_content;
    std::unique_ptr<FoldedNoteReader> m_reader;  // until all is read
};

}  // namespace corvel
