#pragma once

#include "library/FoldedNote.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// A run of folded notes in the order of search results, their texts one after the other in one
/// block. A large note has a chunk of its own.
class IndexChunk {
public:
    /// Small enough to be written anew within a slice, large enough to be searched at full speed.
    static constexpr std::size_t kSize = 2 * 1024 * 1024;
    static constexpr std::size_t kLargeNote = kSize / 2;

    /// Whether a text of this size may be added.
    bool takes(std::size_t size) const;
    void append(NoteKey key, std::string_view text);
    /// Takes the text over without a copy; the chunk must be empty.
    void adopt(FoldedNote&& note);

    std::size_t noteCount() const { return m_entries.size(); }
    NoteKey keyAt(std::size_t entry) const { return m_entries[entry].key; }
    NoteKey firstKey() const { return m_entries.front().key; }
    NoteKey lastKey() const { return m_entries.back().key; }
    std::string_view text() const { return m_text; }
    std::string_view textAt(std::size_t entry) const;
    std::size_t beginOf(std::size_t entry) const { return m_entries[entry].begin; }
    std::size_t endOf(std::size_t entry) const;

    /// The first entry at or behind `key`.
    std::size_t seek(NoteKey key) const;
    /// The entry whose text holds the byte at `offset`.
    std::size_t entryAt(std::size_t offset) const;

    std::size_t memoryInBytes() const;

private:
    struct Entry {
        NoteKey key;
        std::size_t begin;
    };
    std::vector<Entry> m_entries;
    std::string m_text;
};

}  // namespace corvel
