#include "library/TitleSegment.h"

#include "platform/Text.h"

#include <algorithm>

namespace corvel {

void TitleSegment::append(RowId row, std::string_view title) {
    m_text += '\n';
    const std::size_t begin = m_text.size();
    text::foldForSearch(title, m_text);
    std::replace(m_text.begin() + static_cast<std::ptrdiff_t>(begin), m_text.end(), '\n', ' ');
    const std::string_view folded = std::string_view(m_text).substr(begin);
    m_letters.push_back(FuzzyQuery::lettersOf(folded));
    const auto [letters, pairs] = FuzzyQuery::headsOf(folded);
    m_headLetters.push_back(letters);
    m_headPairs.push_back(pairs);
    m_begins.push_back(begin);
    m_rows.push_back(row);
}

std::size_t TitleSegment::findWith(const std::vector<std::uint32_t>& masks,
                                   std::uint32_t wanted,
                                   std::size_t from) {
    constexpr std::size_t kBlock = 32;  // looked at as a whole: the compiler makes vectors of it
    const auto fits = [&](std::size_t i) { return (masks[i] & wanted) == wanted; };
    const std::size_t near = std::min(masks.size(), from + kBlock / 4);
    for (; from < near; ++from) {
        if (fits(from)) return from;
    }
    for (; from + kBlock <= masks.size(); from += kBlock) {
        std::uint32_t any = 0;
        for (std::size_t i = 0; i < kBlock; ++i) {
            any |= fits(from + i) ? 1U : 0U;
        }
        if (any != 0) break;
    }
    while (from < masks.size() && !fits(from)) {
        ++from;
    }
    return from;
}

// Hits lie close to each other or far apart: a few steps, then halving.
std::size_t TitleSegment::positionAt(std::size_t offset, std::size_t from) const {
    constexpr std::size_t kSteps = 8;
    for (std::size_t step = 0; step < kSteps; ++step, ++from) {
        if (from + 1 == m_begins.size() || offset < m_begins[from + 1]) return from;
    }
    const auto behind = std::upper_bound(m_begins.begin() + static_cast<std::ptrdiff_t>(from),
                                         m_begins.end(), offset);
    return static_cast<std::size_t>(behind - m_begins.begin()) - 1;
}

std::size_t TitleSegment::countUpTo(const Hits& hits, MatchRank rank) {
    std::size_t count = 0;
    for (std::size_t i = 0; i <= static_cast<std::size_t>(rank); ++i) {
        count += hits[i].size();
    }
    return count;
}

std::size_t TitleSegment::memoryInBytes() const {
    return m_text.capacity() + m_begins.capacity() * sizeof(std::size_t) +
           m_rows.capacity() * sizeof(RowId) + 3 * m_letters.capacity() * sizeof(std::uint32_t);
}

}  // namespace corvel
