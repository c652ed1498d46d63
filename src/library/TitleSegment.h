#pragma once

#include "library/FuzzyQuery.h"
#include "library/NoteSummary.h"

#include <array>
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
    WordHeads headsAt(std::size_t position) const {
        return {m_headLetters[position], m_headPairs[position]};
    }
    /// The first at or after `from` that has all bits of `wanted`, or their number.
    static std::size_t findWith(const std::vector<std::uint32_t>& masks,
                                std::uint32_t wanted,
                                std::size_t from);
    std::size_t positionAt(std::size_t offset, std::size_t from) const;
    static std::size_t countUpTo(const Hits& hits, MatchRank rank);

    /// Calls `take` with the position of each title that `finder` finds, until it returns false.
    template <typename Take>
    void sweep(const TextFinder& finder, Take take) const;
    template <typename Take>
    void searchPieces(const FuzzyQuery& query, std::size_t limit, Take take, Hits& hits) const;
    template <typename Take>
    void searchWordStarts(
        const FuzzyQuery& query, std::size_t limit, std::size_t from, Take take, Hits& hits) const;
    template <typename Take>
    void searchLetters(const FuzzyQuery& query, std::size_t limit, Take take, Hits& hits) const;

    std::string m_text;
    std::vector<std::size_t> m_begins;
    std::vector<RowId> m_rows;
    // Behind so many, the older notes with a slightly better rank are not worth a key's time.
    static constexpr std::size_t kMostTries = 500;
    // A piece that is met more often, with too few titles that begin with it, is sought only where
    // it begins a word.
    static constexpr std::size_t kMostPieces = 300;

    // Not in a record: a key reads one of them for all titles.
    std::vector<std::uint32_t> m_letters;
    std::vector<std::uint32_t> m_headLetters;
    std::vector<std::uint32_t> m_headPairs;
};

template <typename IsWanted>
void TitleSegment::search(const FuzzyQuery& query,
                          std::size_t limit,
                          IsWanted isWanted,
                          Hits& hits) const {
    // Takes a hit; false when its rank has no room for more.
    const auto take = [&](std::size_t position, MatchRank rank) {
        auto& rows = hits[static_cast<std::size_t>(rank)];
        if (rows.size() < limit && isWanted(m_rows[position])) rows.push_back(m_rows[position]);
        return rows.size() < limit;
    };
    if (query.isEmpty()) {
        for (std::size_t i = 0; i < size() && take(i, MatchRank::start);)
            ++i;
        return;
    }
    searchPieces(query, limit, take, hits);
    if (countUpTo(hits, MatchRank::inside) < limit) searchLetters(query, limit, take, hits);
}

template <typename Take>
void TitleSegment::sweep(const TextFinder& finder, Take take) const {
    std::size_t position = 0;
    for (auto at = finder.findIn(m_text); at < m_text.size();) {
        position = positionAt(at, position);
        if (!take(position)) return;
        at = finder.findIn(m_text, endOf(position));
    }
}

// One sweep for all three ranks, as long as the piece is rare.
template <typename Take>
void TitleSegment::searchPieces(const FuzzyQuery& query,
                                std::size_t limit,
                                Take take,
                                Hits& hits) const {
    std::size_t looked = 0;
    std::size_t next = size();
    sweep(query.finder(), [&](std::size_t position) {
        const auto rank = query.rankOfPiece(titleAt(position));
        if (rank) take(position, *rank);
        if (countUpTo(hits, MatchRank::start) >= limit) return false;
        if (++looked < kMostPieces || countUpTo(hits, MatchRank::inside) < limit) return true;
        next = position + 1;
        return false;
    });
    searchWordStarts(query, limit, next, take, hits);
}

// Titles that have the piece inside of a word are passed over: by now there are enough of them.
template <typename Take>
void TitleSegment::searchWordStarts(
    const FuzzyQuery& query, std::size_t limit, std::size_t from, Take take, Hits& hits) const {
    const auto& [letters, pairs] = query.head();
    const auto& rarer = pairs == 0 ? m_headLetters : m_headPairs;
    const auto wanted = pairs == 0 ? letters : pairs;
    for (auto position = findWith(rarer, wanted, from); position < size();
         position = findWith(rarer, wanted, position + 1)) {
        if ((m_headLetters[position] & letters) != letters) continue;
        const auto rank = query.rankOfPiece(titleAt(position));
        if (rank && *rank != MatchRank::inside) take(position, *rank);
        if (countUpTo(hits, MatchRank::start) >= limit) return;
    }
}

// Scattered letters are found in the newest titles that have them; older ones only count if the
// letters begin words.
template <typename Take>
void TitleSegment::searchLetters(const FuzzyQuery& query,
                                 std::size_t limit,
                                 Take take,
                                 Hits& hits) const {
    std::size_t position = 0;
    for (bool hasRoom = true; hasRoom; ++position) {
        position = findWith(m_letters, query.letters(), position);
        if (position == size()) return;
        const std::string_view title = titleAt(position);
        const auto rank = query.rankOfLetters(title);
        if (!rank || query.rankOfPiece(title)) continue;
        hasRoom = take(position, *rank) || *rank != MatchRank::scattered;
        if (countUpTo(hits, MatchRank::wordStarts) >= limit) return;
    }
    for (std::size_t tries = 0; tries < kMostTries; ++position) {
        position = findWith(m_headLetters, query.head().letters, position);
        if (position == size()) return;
        if (!query.mayBeginWords(headsAt(position))) continue;
        ++tries;
        const std::string_view title = titleAt(position);
        if (!query.fitsWords(title) || query.rankOfPiece(title)) continue;
        take(position, MatchRank::wordStarts);
        if (countUpTo(hits, MatchRank::wordStarts) >= limit) return;
    }
}

}  // namespace corvel
