#include "library/IndexChunk.h"

#include <algorithm>
#include <utility>

namespace corvel {

bool IndexChunk::takes(std::size_t size) const {
    if (m_entries.empty()) return true;
    return size < kLargeNote && m_text.size() + size <= kSize;
}

void IndexChunk::append(NoteKey key, std::string_view text) {
    if (m_entries.empty()) m_text.reserve(std::max(kSize, text.size()));
    m_entries.push_back({key, m_text.size()});
    m_text += text;
}

void IndexChunk::adopt(FoldedNote&& note) {
    m_entries.push_back({note.key, 0});
    m_text = std::move(note.text);
}

std::string_view IndexChunk::textAt(std::size_t entry) const {
    return text().substr(beginOf(entry), endOf(entry) - beginOf(entry));
}

std::size_t IndexChunk::endOf(std::size_t entry) const {
    return entry + 1 < m_entries.size() ? m_entries[entry + 1].begin : m_text.size();
}

std::size_t IndexChunk::seek(NoteKey key) const {
    const auto found =
        std::lower_bound(m_entries.begin(), m_entries.end(), key,
                         [](const Entry& entry, NoteKey wanted) { return entry.key < wanted; });
    return static_cast<std::size_t>(found - m_entries.begin());
}

std::size_t IndexChunk::entryAt(std::size_t offset) const {
    const auto behind = std::upper_bound(
        m_entries.begin(), m_entries.end(), offset,
        [](std::size_t wanted, const Entry& entry) { return wanted < entry.begin; });
    return static_cast<std::size_t>(behind - m_entries.begin()) - 1;
}

std::size_t IndexChunk::memoryInBytes() const {
    return sizeof *this + m_entries.capacity() * sizeof(Entry) + m_text.size();
}

}  // namespace corvel
