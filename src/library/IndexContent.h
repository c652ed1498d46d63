#pragma once

#include "library/IndexChunk.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvel {

/// The folded notes in memory: chunks in the order of search results, and beside them the notes
/// that changed since, whose older texts in the chunks are hidden. Tidying moves them into the
/// chunks, a chunk at a time.
class IndexContent {
public:
    using Recent = std::map<NoteKey, std::string>;

    /// Adds a note behind all others, unless it has changed since it was read.
    void append(FoldedNote&& note);
    void put(FoldedNote&& note);
    void remove(RowId row);

    const std::vector<IndexChunk>& chunks() const { return m_chunks; }
    const Recent& recent() const { return m_recent; }
    /// True when the text that the chunks have of a note no longer holds.
    bool isHidden(RowId row) const;
    /// Counts the changes of what a search would find.
    std::uint64_t version() const { return m_version; }

    /// Merges recent notes into the chunks; false when there is too little to merge.
    bool tidySome();

    std::size_t memoryInBytes() const;

private:
    enum class Tidying { none, dropping, merging };

    bool isWorthTidying() const;
    void dropHidden();
    void mergeRecent();
    bool joinsBefore(const IndexChunk& chunk) const;
    std::vector<FoldedNote> takeRecent(NoteKey from, NoteKey to);
    void insertBefore(std::size_t position, std::vector<FoldedNote> notes);
    void mergeInto(std::size_t position, std::vector<FoldedNote> notes);
    void hide(RowId row);
    void dropRecent(RowId row);

    std::vector<IndexChunk> m_chunks;
    Recent m_recent;
    std::unordered_map<RowId, std::int64_t> m_recentDates;
    std::size_t m_recentBytes = 0;
    std::unordered_set<RowId> m_hidden;
    std::unordered_set<RowId> m_dropping;  // hidden ones that leave the chunks with this tidying
    Tidying m_tidying = Tidying::none;
    std::size_t m_position = 0;  // the chunk that tidying comes to next
    std::uint64_t m_version = 0;
};

}  // namespace corvel
