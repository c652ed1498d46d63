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

class ViewContext;

/// The folded text of title and content of every note outside the trash, in memory, for "contains,
/// ignoring case and diacritics" as one types. See docs/search.md.
class SearchIndex {
public:
    explicit SearchIndex(ViewContext& context);  // must outlive the index
    ~SearchIndex();

    /// Reads and folds notes for about `budget`; false when all is read. Also merges recent edits
    /// into the main buffer. Called from the loop's idle time.
    bool work(std::chrono::milliseconds budget);
    /// True once every note is in; until then the store itself has to be asked.
    bool isReady() const;

    /// To be called after the store has taken the change. A trashed note is removed.
    void noteChanged(RowId row, std::string_view title, std::string_view content, Date modifiedAt);
    void noteRemoved(RowId row);

    /// One query's run over the index, newest modification first. A change of the index ends it:
    /// `next` then gives nothing more and `isStale` is true.
    class Sweep {
    public:
        virtual ~Sweep() = default;
        /// The next hits, at most `limit`, found within about `budget`; `isFinished` tells whether
        /// more follow.
        virtual std::vector<RowId> next(std::size_t limit, std::chrono::milliseconds budget) = 0;
        virtual bool isFinished() const = 0;
        virtual bool isStale() const = 0;
    };
    std::unique_ptr<Sweep> search(std::string_view query) const;

    std::size_t memoryInBytes() const;

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

}  // namespace corvel
