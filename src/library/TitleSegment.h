#pragma once

#include "library/FuzzyQuery.h"
#include "library/NoteSummary.h"
#include "library/TitleMarks.h"
#include "library/TitleMatcher.h"

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Folded titles in one buffer, in the order in which equal hits are wanted.
class TitleSegment {
public:
    /// Hits by rank, each rank in the order of the titles and not longer than a limit.
    using Hits = std::array<std::vector<RowId>, kMatchRanks>;

    void append(RowId row, std::string_view title);
    std::size_t size() const { return m_rows.size(); }
    RowId rowAt(std::size_t position) const { return m_rows[position]; }
    /// All titles, a line feed before each.
    std::string_view text() const { return m_text; }
    std::size_t memoryInBytes() const;

    /// Adds the hits among titles whose row `isWanted`: the first `limit` of each rank, as far as
    /// the better ranks leave room for them.
    template <typename IsWanted>
    void search(const FuzzyQuery& query, std::size_t limit, IsWanted isWanted, Hits& hits) const;

private:
    std::string_view titleAt(std::size_t position) const {
        const std::size_t begin = m_begins[position];
        return {m_text.data() + begin, endOf(position) - begin};
    }
    std::size_t endOf(std::size_t position) const {
        return position + 1 < m_begins.size() ? m_begins[position + 1] - 1 : m_text.size();
    }
    /// Calls `take` with the position of each of the candidates that has the query at `rank`, until
    /// it returns false.
    template <typename Take>
    void eachAt(MatchRank rank, const FuzzyQuery& query, TitleMatcher& matcher, Take take) const;

    std::string m_text;
    std::vector<std::size_t> m_begins;
    std::vector<RowId> m_rows;
    TitleMarks m_marks;
};

template <typename Take>
void TitleSegment::eachAt(MatchRank rank,
                          const FuzzyQuery& query,
                          TitleMatcher& matcher,
                          Take take) const {
    for (std::size_t chunk = 0; chunk < m_marks.chunkCount(); ++chunk) {
        std::size_t begin = chunk * TitleMarks::kChunkTitles;
        for (std::uint64_t titles : matcher.candidates(rank, chunk)) {
            for (; titles != 0; titles &= titles - 1) {
                const auto position = begin + static_cast<std::size_t>(std::countr_zero(titles));
                if (!query.isAtLeast(rank, titleAt(position))) continue;
                matcher.leaveOut(position);
                if (!take(position)) return;
            }
            begin += 64;
        }
    }
}

template <typename IsWanted>
void TitleSegment::search(const FuzzyQuery& query,
                          std::size_t limit,
                          IsWanted isWanted,
                          Hits& hits) const {
    // Takes a hit; false when its rank has no room for more.
    const auto take = [&](std::size_t position, std::size_t rank, std::size_t room) {
        auto& rows = hits[rank];
        if (rows.size() < room && isWanted(m_rows[position])) rows.push_back(m_rows[position]);
        return rows.size() < room;
    };
    if (query.isEmpty()) {
        for (std::size_t i = 0; i < size() && take(i, 0, limit);)
            ++i;
        return;
    }
    TitleMatcher matcher(m_marks, query);
    std::size_t room = limit;
    for (std::size_t rank = 0; rank < kMatchRanks && hits[rank].size() < room; ++rank) {
        eachAt(static_cast<MatchRank>(rank), query, matcher,
               [&](std::size_t position) { return take(position, rank, room); });
        room -= hits[rank].size();
    }
}

}  // namespace corvel
