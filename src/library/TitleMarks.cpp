#include "library/TitleMarks.h"

#include "library/FuzzyQuery.h"

#include <algorithm>

namespace corvel {

std::size_t TitleMarks::classOf(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if (byte >= 'a' && byte <= 'z') return value - std::size_t{'a'};
    if (byte >= '0' && byte <= '9') return 26 + (value - std::size_t{'0'});
    return byte == ' ' ? 36 : 37 + value % 3;
}

std::size_t TitleMarks::tripleOf(char first, char second, char third) {
    constexpr std::uint32_t kSpread = 0x9E3779B1;  // by the golden ratio, as hashes do
    const std::size_t all =
        (classOf(first) * kClasses + classOf(second)) * kClasses + classOf(third);
    return static_cast<std::uint32_t>(all) * kSpread >> 24U;
}

void TitleMarks::set(Mark& mark) const {
    const std::size_t chunk = m_size / kChunkTitles;
    if (mark.capacity() <= chunk) mark.reserve(chunk + 1 + chunk / 8);
    if (mark.size() <= chunk) mark.resize(chunk + 1);
    const std::size_t place = m_size % kChunkTitles;
    mark[chunk][place / 64] |= std::uint64_t{1} << (place % 64);
}

void TitleMarks::append(std::string_view folded) {
    setWords(folded);
    setPairs(folded);
    ++m_size;
}

void TitleMarks::setWords(std::string_view folded) {
    std::array<std::uint8_t, kClasses> counts{};
    std::size_t slot = 0;
    for (std::size_t place = 0; place < folded.size(); ++place) {
        const std::size_t byte = classOf(folded[place]);
        if (folded[place] != ' ' && FuzzyQuery::isWordStart(folded, place)) {
            if (place > 0) slot = std::min(slot + 1, kSlots - 1);
            set(m_heads[slot][byte]);
            set(m_anyHeads[byte]);
        }
        set(m_words[slot][byte]);
        if (counts[byte] < kMostEqual) set(m_counts[counts[byte]++][byte]);
    }
}

void TitleMarks::setPairs(std::string_view folded) {
    for (std::size_t place = 1; place < folded.size(); ++place) {
        const std::size_t first = classOf(folded[place - 1]);
        const std::size_t second = classOf(folded[place]);
        set(m_pairs[first][second]);
        if (FuzzyQuery::isWordStart(folded, place - 1)) set(m_headPairs[first][second]);
        if (place > 1) {
            set(m_triples[tripleOf(folded[place - 2], folded[place - 1], folded[place])]);
        }
    }
}

std::size_t TitleMarks::memoryInBytes() const {
    std::size_t chunks = 0;
    const auto add = [&chunks](const auto& row) {
        for (const Mark& mark : row) {
            chunks += mark.capacity();
        }
    };
    std::ranges::for_each(m_counts, add);
    std::ranges::for_each(m_words, add);
    std::ranges::for_each(m_heads, add);
    add(m_anyHeads);
    std::ranges::for_each(m_pairs, add);
    std::ranges::for_each(m_headPairs, add);
    add(m_triples);
    return sizeof(*this) + chunks * sizeof(Chunk);
}

}  // namespace corvel
