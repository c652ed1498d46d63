#pragma once

#include <cstddef>
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
    /// Whether a title that has no better rank has this one.
    bool isAtLeast(MatchRank rank, std::string_view folded) const;

    /// What to show in bold in a title that fits, in order and joined where it touches.
    std::vector<MatchRange> rangesIn(std::string_view title) const;

    /// The query in one piece, folded, without spaces at its ends.
    const std::string& piece() const { return m_piece; }
    /// The characters of the piece but for spaces.
    const std::vector<std::string>& letters() const { return m_letters; }

    /// Whether a word begins at a byte of a folded text.
    static bool isWordStart(std::string_view folded, std::size_t place);

private:
    using Places = std::vector<std::size_t>;

    std::optional<std::size_t> bestPiece(std::string_view folded) const;
    std::optional<MatchRank> rankOfPiece(std::string_view folded) const;
    bool atWordStarts(std::string_view folded, Places* places) const;
    bool scattered(std::string_view folded, Places* places) const;

    std::string m_piece;
    std::string m_word;  // the piece behind a space
    std::vector<std::string> m_letters;
};

}  // namespace corvel
