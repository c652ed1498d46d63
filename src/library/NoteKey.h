#pragma once

#include "library/NoteSummary.h"

#include <compare>
#include <cstdint>
#include <limits>

namespace corvel {

/// A note's place in the order of search results: newest modification first, then the lower row.
struct NoteKey {
    std::int64_t modifiedAt = 0;  ///< microseconds; a note without a date is the oldest
    RowId row = 0;

    static constexpr std::int64_t kNoDate = std::numeric_limits<std::int64_t>::min();
    static constexpr NoteKey first() {
        return {std::numeric_limits<std::int64_t>::max(), std::numeric_limits<RowId>::min()};
    }

    /// The place right behind this note.
    constexpr NoteKey next() const { return {modifiedAt, row + 1}; }

    constexpr bool operator==(const NoteKey&) const = default;
    constexpr std::strong_ordering operator<=>(const NoteKey& other) const {
        const auto byDate = other.modifiedAt <=> modifiedAt;
        return byDate != 0 ? byDate : row <=> other.row;
    }
};

}  // namespace corvel
