#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace corvel {

/// What titles are made of, turned on its side: for each mark, such as "the second word begins with
/// an e" or "an r right behind a t", one bit a title. A query asks its few marks about thousands of
/// titles at a time. Bytes count by class (letters, digits, a space and three for all others), so
/// that a mark may say too much, never too little.
class TitleMarks {
public:
    static constexpr std::size_t kChunkTitles = 2048;
    static constexpr std::size_t kClasses = 40;
    static constexpr std::size_t kMostEqual = 6;
    static constexpr std::size_t kSlots = 6;

    /// A bit for each of so many titles in a row.
    using Chunk = std::array<std::uint64_t, kChunkTitles / 64>;
    /// As many chunks as the last title that has the mark needs.
    using Mark = std::vector<Chunk>;

    /// The next title, as text::foldedForSearch gives it.
    void append(std::string_view folded);
    std::size_t chunkCount() const { return (m_size + kChunkTitles - 1) / kChunkTitles; }
    std::size_t memoryInBytes() const;

    /// The byte, `count` times or more: 1 to kMostEqual.
    const Mark& counted(char byte, std::size_t count) const {
        return m_counts[count - 1][classOf(byte)];
    }
    /// The byte in a word, or at its start. The last of the slots stands for all further words.
    const Mark& inWord(std::size_t slot, char byte) const { return m_words[slot][classOf(byte)]; }
    const Mark& head(std::size_t slot, char byte) const { return m_heads[slot][classOf(byte)]; }
    const Mark& anyHead(char byte) const { return m_anyHeads[classOf(byte)]; }
    /// A byte with another right behind it, anywhere or at the start of a word.
    const Mark& pair(char first, char second) const {
        return m_pairs[classOf(first)][classOf(second)];
    }
    const Mark& headPair(char first, char second) const {
        return m_headPairs[classOf(first)][classOf(second)];
    }
    /// Three bytes in a row, which share a mark with others.
    const Mark& triple(char first, char second, char third) const {
        return m_triples[tripleOf(first, second, third)];
    }

    static std::size_t classOf(char byte);

private:
    using Row = std::array<Mark, kClasses>;

    static std::size_t tripleOf(char first, char second, char third);
    void set(Mark& mark) const;
    void setWords(std::string_view folded);
    void setPairs(std::string_view folded);

    std::size_t m_size = 0;
    std::array<Row, kMostEqual> m_counts;
    std::array<Row, kSlots> m_words;
    std::array<Row, kSlots> m_heads;
    Row m_anyHeads;
    std::array<Row, kClasses> m_pairs;
    std::array<Row, kClasses> m_headPairs;
    std::array<Mark, 256> m_triples;
};

}  // namespace corvel
