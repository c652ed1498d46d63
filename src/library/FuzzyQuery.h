#pragma once

#include "platform/TextFinder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// How well a title fits a query, the best first. Equal ones keep the order they come in.
enum class MatchRank {
    start,       ///< in one piece, at the start of the title
    wordStart,   ///< in one piece, behind a space
    inside,      ///< in one piece
    wordStarts,  ///< in pieces that begin words
    scattered
};
inline constexpr std::size_t kMatchRanks = 5;

/// Bytes of a text that made it a hit.
struct MatchRange {
    std::size_t begin;
    std::size_t end;
    bool operator==(const MatchRange&) const = default;
};

/// A query as one types it into a palette: its letters stand in a title in this order, perhaps with
/// others between them. Case and diacritics do not matter, nor do spaces where the letters are
/// apart.
class FuzzyQuery {
public:
    explicit FuzzyQuery(std::string_view query);

    /// An empty query fits everything.
    bool isEmpty() const { return m_letters.empty(); }

    /// `folded` is a title as text::foldedForSearch gives it.
    std::optional<MatchRank> rank(std::string_view folded) const;
    /// The ranks of titles that have the query in one piece, and of the others.
    std::optional<MatchRank> rankOfPiece(std::string_view folded) const;
    std::optional<MatchRank> rankOfLetters(std::string_view folded) const;

    /// What to show in bold in a title that fits, in order and joined where it touches.
    std::vector<MatchRange> rangesIn(std::string_view title) const;

    /// Looks for the query in one piece in many titles at once.
    const TextFinder& finder() const { return m_finder; }

    /// One bit for each letter that a text holds: a title without one of the query's cannot fit.
    static std::uint64_t lettersOf(std::string_view folded);
    bool mayFit(std::uint64_t letters) const { return (m_mask & ~letters) == 0; }
    /// The same for the letters that begin words, and for a query whose letters do.
    static std::uint64_t initialsOf(std::string_view folded);
    bool mayBegin(std::uint64_t initials) const { return (m_firstMask & ~initials) == 0; }
    bool fitsWords(std::string_view folded) const { return atWordStarts(folded, nullptr); }

private:
    using Places = std::vector<std::size_t>;

    std::optional<std::size_t> bestPiece(std::string_view folded) const;
    bool atWordStarts(std::string_view folded, Places* places) const;
    bool scattered(std::string_view folded, Places* places) const;

    TextFinder m_finder;
    std::vector<std::string> m_letters;  // without spaces
    std::uint64_t m_mask = 0;
    std::uint64_t m_firstMask = 0;
};

}  // namespace corvel
