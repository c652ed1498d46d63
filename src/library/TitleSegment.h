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
    std::size_t positionAt(std::size_t offset, std::size_t from) const;
    static std::size_t countUpTo(const Hits& hits, MatchRank rank);

    /// Calls `take` with the position of each title that `finder` finds, until it returns false.
    template <typename Take>
    void sweep(const TextFinder& finder, std::size_t skipped, Take take) const;
    template <typename Take>
    void searchPieces(const FuzzyQuery& query, std::size_t limit, Take take, Hits& hits) const;
    template <typename Take>
    void searchLetters(const FuzzyQuery& query, std::size_t limit, Take take, Hits& hits) const;

    std::string m_text;
    std::vector<std::size_t> m_begins;
    std::vector<RowId> m_rows;
    static constexpr std::size_t kMostTries = 10'000;

    struct Letters {
        std::uint64_t all;
        std::uint64_t initial;  ///< those that begin a word
    };
    std::vector<Letters> m_letters;
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
    searchPieces(query, limit, take, hits);
    if (countUpTo(hits, MatchRank::inside) < limit && !query.isEmpty()) {
        searchLetters(query, limit, take, hits);
    }
}

template <typename Take>
void TitleSegment::sweep(const TextFinder& finder, std::size_t skipped, Take take) const {
    std::size_t position = 0;
    for (auto at = finder.findIn(m_text); at < m_text.size();) {
        position = positionAt(at + skipped, position);
        if (!take(position)) return;
        at = finder.findIn(m_text, endOf(position));
    }
}

// A sweep for each rank, so that a common piece that begins no word is not looked at more often
// than there is room for.
template <typename Take>
void TitleSegment::searchPieces(const FuzzyQuery& query,
                                std::size_t limit,
                                Take take,
                                Hits& hits) const {
    const std::string& sought = query.finder().sought();
    sweep(TextFinder("\n" + sought), 1,
          [&](std::size_t position) { return take(position, MatchRank::start); });
    if (countUpTo(hits, MatchRank::start) >= limit || sought.empty()) return;
    for (const auto rank : {MatchRank::wordStart, MatchRank::inside}) {
        const TextFinder spaced(" " + sought);
        sweep(rank == MatchRank::wordStart ? spaced : query.finder(), 0, [&](std::size_t position) {
            const bool isOfRank = query.rankOfPiece(titleAt(position)) == rank;
            return !isOfRank || take(position, rank);
        });
        if (countUpTo(hits, rank) >= limit) return;
    }
}

template <typename Take>
void TitleSegment::searchLetters(const FuzzyQuery& query,
                                 std::size_t limit,
                                 Take take,
                                 Hits& hits) const {
    bool takesScattered = true;
    std::size_t tries = 0;
    for (std::size_t position = 0; position < m_rows.size(); ++position) {
        const Letters& letters = m_letters[position];
        const bool mayBeginWords = query.mayBegin(letters.initial);
        if (!query.mayFit(letters.all) || !(takesScattered || mayBeginWords)) continue;
        // Behind so many, older notes with a slightly better rank are not worth a key's time.
        if (!takesScattered && ++tries > kMostTries) return;
        const std::string_view title = titleAt(position);
        const auto rank = takesScattered           ? query.rankOfLetters(title)
                          : query.fitsWords(title) ? std::optional(MatchRank::wordStarts)
                                                   : std::nullopt;
        if (!rank || query.rankOfPiece(title)) continue;
        const bool hasRoom = take(position, *rank);
        if (!hasRoom && *rank == MatchRank::scattered) takesScattered = false;
        if (countUpTo(hits, MatchRank::wordStarts) >= limit) return;
    }
}

}  // namespace corvel
