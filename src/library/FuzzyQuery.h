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

/// How the words of a text begin, a bit for what there is; others may share it.
struct WordHeads {
    std::uint32_t letters = 0;
    std::uint32_t pairs = 0;  ///< of a word's first two letters
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
    static std::uint32_t lettersOf(std::string_view folded);
    std::uint32_t letters() const { return m_mask; }
    /// The same for how words begin, and for a query whose letters begin words.
    static WordHeads headsOf(std::string_view folded);
    /// A title without this cannot have the query, in one piece, where a word begins.
    const WordHeads& head() const { return m_head; }
    /// Whether the letters of the query may begin the words of a title, each or some in a row.
    bool mayBeginWords(const WordHeads& heads) const;
    bool fitsWords(std::string_view folded) const { return atWordStarts(folded, nullptr); }

private:
    using Places = std::vector<std::size_t>;

    std::optional<std::size_t> bestPiece(std::string_view folded) const;
    bool atWordStarts(std::string_view folded, Places* places) const;
    bool scattered(std::string_view folded, Places* places) const;

    TextFinder m_finder;
    std::vector<std::string> m_letters;  // without spaces
    std::uint32_t m_mask = 0;
    WordHeads m_head;
    std::vector<WordHeads> m_next;  // the second and the third, each with the one before
};

}  // namespace corvel
