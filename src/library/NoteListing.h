#pragma once

#include "library/NoteSummary.h"
#include "library/SidebarFilter.h"
#include "library/SortOption.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

class ViewContext;

/// What lists and the sidebar ask of the store: ids in order, one row's record, kept counts, tag
/// paths. Every member throws StoreError.
class NoteListing {
public:
    static constexpr std::size_t kNoLimit = SIZE_MAX;

    explicit NoteListing(ViewContext& context);  // must outlive the listing

    /// The filter's notes: pinned first, then by `sort`. Equal keys keep the store's order.
    std::vector<RowId> rows(const SidebarFilter& filter,
                            SortOption sort,
                            std::size_t limit = kNoLimit) const;
    /// Whether the filter lists this note.
    bool contains(const SidebarFilter& filter, RowId row) const;
    /// Where `row` belongs in `rows`, which are in the order of `sort` and do not hold it: a binary
    /// search that reads one key a step.
    std::size_t positionFor(const std::vector<RowId>& rows, RowId row, SortOption sort) const;

    std::optional<NoteSummary> summary(RowId row) const;
    std::optional<RowId> rowOf(const Uuid& id) const;
    std::optional<Uuid> idOf(RowId row) const;
    NoteCounts counts() const;
    /// Distinct tag paths in the text of notes that are neither trashed nor archived.
    std::vector<std::string> tagPaths() const;

private:
    ViewContext& m_context;
};

}  // namespace corvel
