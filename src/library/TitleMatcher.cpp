#include "library/TitleMatcher.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

// For loops over bits, which processors with wider vectors do at twice the speed.
#if defined(__x86_64__)
#define CORVEL_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define CORVEL_WIDE
#endif

namespace corvel {

namespace {

using Chunk = TitleMarks::Chunk;
using Slots = std::array<Chunk, TitleMarks::kSlots>;
using Letters = std::vector<std::string>;

/// Letters of a query beyond these are left to the look at the title.
constexpr std::size_t kMostLetters = 8;
/// So many titles of a chunk, for each letter of the query, are sooner looked at than sieved.
constexpr std::size_t kFewByLetter = 4;

bool areMany(const Chunk& titles, std::size_t most) {
    std::size_t count = 0;
    for (std::uint64_t word : titles) {
        for (; word != 0; word &= word - 1) {
            if (++count > most) return true;
        }
    }
    return false;
}

void leaveOutOf(std::vector<Chunk>& chunks, std::size_t position) {
    const std::size_t chunk = position / TitleMarks::kChunkTitles;
    const std::size_t place = position % TitleMarks::kChunkTitles;
    if (chunk < chunks.size()) chunks[chunk][place / 64] &= ~(std::uint64_t{1} << (place % 64));
}

const Chunk& chunkOf(const TitleMarks::Mark& mark, std::size_t chunk) {
    static constexpr Chunk kNone{};
    return chunk < mark.size() ? mark[chunk] : kNone;
}

CORVEL_WIDE void keep(Chunk& titles,
                      const std::vector<const TitleMarks::Mark*>& marks,
                      std::size_t chunk) {
    for (const auto* mark : marks) {
        const Chunk& having = chunkOf(*mark, chunk);
        for (std::size_t i = 0; i < titles.size(); ++i) {
            titles[i] &= having[i];
        }
    }
}

void unite(Chunk& titles, const Slots& slots) {
    for (const Chunk& slot : slots) {
        for (std::size_t i = 0; i < titles.size(); ++i) {
            titles[i] |= slot[i];
        }
    }
}

// Each letter stands in the word of the one before or in a later one.
CORVEL_WIDE Chunk inWords(const TitleMarks& marks,
                          const Letters& letters,
                          const Chunk& titles,
                          std::size_t chunk) {
    Slots reached{titles};  // with the last letter in this word
    for (std::size_t letter = 0; letter < std::min(letters.size(), kMostLetters); ++letter) {
        Chunk before{};
        for (std::size_t slot = 0; slot < TitleMarks::kSlots; ++slot) {
            const Chunk& having = chunkOf(marks.inWord(slot, letters[letter].front()), chunk);
            for (std::size_t i = 0; i < before.size(); ++i) {
                before[i] |= reached[slot][i];
                reached[slot][i] = before[i] & having[i];
            }
        }
    }
    unite(reached.front(), reached);
    return reached.front();
}

// Each letter begins some word or stands behind the one before: soon told, and mostly enough.
void keepWithHeads(const TitleMarks& marks,
                   const Letters& letters,
                   Chunk& titles,
                   std::size_t chunk) {
    keep(titles, {&marks.anyHead(letters.front().front())}, chunk);
    for (std::size_t letter = 1; letter < letters.size(); ++letter) {
        const char first = letters[letter].front();
        const Chunk& head = chunkOf(marks.anyHead(first), chunk);
        const Chunk& pair = chunkOf(marks.pair(letters[letter - 1].back(), first), chunk);
        for (std::size_t i = 0; i < titles.size(); ++i) {
            titles[i] &= head[i] | pair[i];
        }
    }
}

// Each letter begins a later word than the one before, or stands right behind it in its word.
CORVEL_WIDE Chunk atHeads(const TitleMarks& marks,
                          const Letters& letters,
                          const Chunk& titles,
                          std::size_t chunk) {
    Slots heads;     // with the last letter at the start of this word
    Slots others{};  // or further inside
    for (std::size_t slot = 0; slot < TitleMarks::kSlots; ++slot) {
        heads[slot] = titles;
        keep(heads[slot], {&marks.head(slot, letters.front().front())}, chunk);
    }
    for (std::size_t letter = 1; letter < std::min(letters.size(), kMostLetters); ++letter) {
        const std::string& last = letters[letter - 1];
        const char first = letters[letter].front();
        const Chunk& pair = chunkOf(marks.pair(last.back(), first), chunk);
        // The pair at a word's start is of bytes: of letters only where they have one each.
        const Chunk& headPair =
            last.size() == 1 ? chunkOf(marks.headPair(last.back(), first), chunk) : pair;
        Chunk before{};
        for (std::size_t slot = 0; slot < TitleMarks::kSlots; ++slot) {
            const Chunk& head = chunkOf(marks.head(slot, first), chunk);
            const std::uint64_t further = slot + 1 == TitleMarks::kSlots ? ~std::uint64_t{0} : 0;
            for (std::size_t i = 0; i < before.size(); ++i) {
                const std::uint64_t atHead = heads[slot][i];
                const std::uint64_t inside = others[slot][i];
                heads[slot][i] = (before[i] | ((atHead | inside) & further)) & head[i];
                others[slot][i] = (atHead & headPair[i]) | (inside & pair[i]);
                before[i] |= atHead | inside;
            }
        }
    }
    unite(heads.front(), heads);
    unite(heads.front(), others);
    return heads.front();
}

}  // namespace

TitleMatcher::TitleMatcher(const TitleMarks& marks, const FuzzyQuery& query)
    : m_marks(marks), m_query(query) {
    chooseLetters();
    choosePiece();
    m_withLetters.reserve(marks.chunkCount());
    m_withPiece.reserve(marks.chunkCount());
}

void TitleMatcher::chooseLetters() {
    std::array<std::size_t, TitleMarks::kClasses> counts{};
    for (const std::string& letter : m_query.letters()) {
        for (const char byte : letter) {
            const std::size_t count = ++counts[TitleMarks::classOf(byte)];
            if (count <= TitleMarks::kMostEqual) m_letters.push_back(&m_marks.counted(byte, count));
        }
    }
}

void TitleMatcher::choosePiece() {
    const std::string& piece = m_query.piece();
    m_start.push_back(&m_marks.head(0, piece[0]));
    m_wordStart.push_back(&m_marks.pair(' ', piece[0]));
    for (std::size_t i = 1; i < piece.size(); ++i) {
        m_piece.push_back(&m_marks.pair(piece[i - 1], piece[i]));
        if (i > 1) m_piece.push_back(&m_marks.triple(piece[i - 2], piece[i - 1], piece[i]));
    }
    if (piece.size() < 2) return;
    m_start.push_back(&m_marks.headPair(piece[0], piece[1]));
    m_wordStart.push_back(m_start.back());
}

const Chunk& TitleMatcher::withLetters(std::size_t chunk) {
    while (m_withLetters.size() <= chunk) {
        Chunk titles = chunkOf(*m_letters.front(), m_withLetters.size());
        keep(titles, m_letters, m_withLetters.size());
        m_withLetters.push_back(titles);
    }
    return m_withLetters[chunk];
}

const Chunk& TitleMatcher::withPiece(std::size_t chunk) {
    while (m_withPiece.size() <= chunk) {
        Chunk titles = withLetters(m_withPiece.size());
        keep(titles, m_piece, m_withPiece.size());
        m_withPiece.push_back(titles);
    }
    return m_withPiece[chunk];
}

Chunk TitleMatcher::candidates(MatchRank rank, std::size_t chunk) {
    if (rank <= MatchRank::inside) {
        Chunk titles = withPiece(chunk);
        if (rank == MatchRank::start) keep(titles, m_start, chunk);
        if (rank == MatchRank::wordStart) keep(titles, m_wordStart, chunk);
        return titles;
    }
    Chunk titles = withLetters(chunk);
    const auto& letters = m_query.letters();
    if (rank == MatchRank::wordStarts) keepWithHeads(m_marks, letters, titles, chunk);
    if (!areMany(titles, kFewByLetter * letters.size())) return titles;
    return rank == MatchRank::wordStarts ? atHeads(m_marks, letters, titles, chunk)
                                         : inWords(m_marks, letters, titles, chunk);
}

void TitleMatcher::leaveOut(std::size_t position) {
    leaveOutOf(m_withLetters, position);
    leaveOutOf(m_withPiece, position);
}

}  // namespace corvel
