#pragma once

#include "library/FuzzyQuery.h"
#include "library/TitleMarks.h"

#include <cstddef>
#include <vector>

namespace corvel {

/// Tells which titles are worth a look for one query, rank after rank.
class TitleMatcher {
public:
    using Chunk = TitleMarks::Chunk;

    /// Both must outlive the matcher. The query is not empty.
    TitleMatcher(const TitleMarks& marks, const FuzzyQuery& query);

    /// The titles of a chunk that may have the query at `rank`: all that do and a few others. To be
    /// asked for the chunks of a rank in their order.
    Chunk candidates(MatchRank rank, std::size_t chunk);
    /// Takes a title that has the query at this rank out of what is told of the ranks behind.
    void leaveOut(std::size_t position);

private:
    using Mark = TitleMarks::Mark;
    using Marks = std::vector<const Mark*>;

    void chooseLetters();
    void choosePiece();
    const Chunk& withLetters(std::size_t chunk);
    const Chunk& withPiece(std::size_t chunk);

    const TitleMarks& m_marks;
    const FuzzyQuery& m_query;
    Marks m_letters;
    Marks m_piece;
    Marks m_start;      // besides those of the piece
    Marks m_wordStart;  // the same
    // What the ranks have in common, as far as asked for.
    std::vector<Chunk> m_withLetters;
    std::vector<Chunk> m_withPiece;
};

}  // namespace corvel
