#include "library/IndexContent.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kManyChanges = 256;
constexpr std::size_t kManyBytes = 1024 * 1024;
constexpr NoteKey kBehindAll{NoteKey::kNoDate, std::numeric_limits<RowId>::max()};

void appendTo(std::vector<IndexChunk>& chunks, FoldedNote&& note) {
    if (chunks.empty() || !chunks.back().takes(note.text.size())) chunks.emplace_back();
    if (note.text.size() >= IndexChunk::kLargeNote) {
        chunks.back().adopt(std::move(note));
    } else {
        chunks.back().append(note.key, note.text);
    }
}

}  // namespace

void IndexContent::append(FoldedNote&& note) {
    if (!isHidden(note.key.row)) appendTo(m_chunks, std::move(note));
}

void IndexContent::put(FoldedNote&& note) {
    hide(note.key.row);
    dropRecent(note.key.row);
    m_recentBytes += note.text.size();
    m_recentDates[note.key.row] = note.key.modifiedAt;
    m_recent[note.key] = std::move(note.text);
}

void IndexContent::remove(RowId row) {
    hide(row);
    dropRecent(row);
}

void IndexContent::hide(RowId row) {
    m_hidden.insert(row);
    ++m_version;
}

void IndexContent::dropRecent(RowId row) {
    const auto date = m_recentDates.find(row);
    if (date == m_recentDates.end()) return;
    const auto note = m_recent.find({date->second, row});
    m_recentBytes -= note->second.size();
    m_recent.erase(note);
    m_recentDates.erase(date);
}

bool IndexContent::isHidden(RowId row) const {
    return m_hidden.contains(row) || m_dropping.contains(row);
}

bool IndexContent::isWorthTidying() const {
    return m_hidden.size() > kManyChanges || m_recentBytes > kManyBytes;
}

// First what is hidden leaves the chunks, then the marks go and recent notes come in. A note that
// changes meanwhile is marked anew and waits for the next time.
bool IndexContent::tidySome() {
    switch (m_tidying) {
        case Tidying::none:
            if (!isWorthTidying()) return false;
            m_dropping = std::exchange(m_hidden, {});
            m_tidying = Tidying::dropping;
            m_position = 0;
            break;
        case Tidying::dropping:
            dropHidden();
            break;
        case Tidying::merging:
            mergeRecent();
            break;
    }
    return true;
}

void IndexContent::dropHidden() {
    if (m_position == m_chunks.size()) {
        m_dropping.clear();
        m_tidying = Tidying::merging;
        m_position = 0;
        return;
    }
    IndexChunk& chunk = m_chunks[m_position];
    const bool isJoined = joinsBefore(chunk);
    bool isClean = true;
    for (std::size_t i = 0; isClean && i < chunk.noteCount(); ++i) {
        isClean = !m_dropping.contains(chunk.keyAt(i).row);
    }
    if (isClean && !isJoined) {
        ++m_position;
        return;
    }
    IndexChunk fresh;
    IndexChunk& target = isJoined ? m_chunks[m_position - 1] : fresh;
    for (std::size_t i = 0; i < chunk.noteCount(); ++i) {
        if (!m_dropping.contains(chunk.keyAt(i).row))
            target.append(chunk.keyAt(i), chunk.textAt(i));
    }
    if (isJoined || fresh.noteCount() == 0) {
        m_chunks.erase(m_chunks.begin() + static_cast<std::ptrdiff_t>(m_position));
    } else {
        chunk = std::move(fresh);
        ++m_position;
    }
}

// Merging leaves small chunks at the front and elsewhere; two that fit in one become one.
bool IndexContent::joinsBefore(const IndexChunk& chunk) const {
    return m_position > 0 && m_chunks[m_position - 1].takes(chunk.text().size());
}

// The notes before the chunk, then those within it, a few megabytes at a time.
void IndexContent::mergeRecent() {
    const bool isAtEnd = m_position == m_chunks.size();
    const NoteKey start = isAtEnd ? kBehindAll : m_chunks[m_position].firstKey();
    if (auto before = takeRecent(NoteKey::first(), start); !before.empty()) {
        insertBefore(m_position, std::move(before));
    } else if (isAtEnd) {
        m_tidying = Tidying::none;
    } else if (auto within = takeRecent(start, m_chunks[m_position].lastKey()); !within.empty()) {
        mergeInto(m_position, std::move(within));
    } else {
        ++m_position;
    }
}

std::vector<FoldedNote> IndexContent::takeRecent(NoteKey from, NoteKey to) {
    std::vector<FoldedNote> notes;
    std::size_t bytes = 0;
    auto note = m_recent.lower_bound(from);
    while (note != m_recent.end() && note->first < to && bytes < IndexChunk::kSize) {
        if (m_hidden.contains(note->first.row)) {
            ++note;
            continue;
        }
        bytes += note->second.size();
        m_recentBytes -= note->second.size();
        m_recentDates.erase(note->first.row);
        notes.push_back({note->first, std::move(note->second)});
        note = m_recent.erase(note);
    }
    return notes;
}

void IndexContent::insertBefore(std::size_t position, std::vector<FoldedNote> notes) {
    std::vector<IndexChunk> added;
    for (auto& note : notes)
        appendTo(added, std::move(note));
    m_position = position + added.size();
    m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(position),
                    std::make_move_iterator(added.begin()), std::make_move_iterator(added.end()));
}

void IndexContent::mergeInto(std::size_t position, std::vector<FoldedNote> notes) {
    const IndexChunk old = std::move(m_chunks[position]);
    std::vector<IndexChunk> merged;
    auto next = notes.begin();
    for (std::size_t i = 0; i < old.noteCount(); ++i) {
        for (; next != notes.end() && next->key < old.keyAt(i); ++next) {
            appendTo(merged, std::move(*next));
        }
        appendTo(merged, {old.keyAt(i), std::string(old.textAt(i))});
    }
    m_chunks.erase(m_chunks.begin() + static_cast<std::ptrdiff_t>(position));
    m_chunks.insert(m_chunks.begin() + static_cast<std::ptrdiff_t>(position),
                    std::make_move_iterator(merged.begin()), std::make_move_iterator(merged.end()));
}

std::size_t IndexContent::memoryInBytes() const {
    std::size_t bytes =
        m_recentBytes + m_recent.size() * 128 + (m_hidden.size() + m_dropping.size()) * 24;
    for (const auto& chunk : m_chunks)
        bytes += chunk.memoryInBytes();
    return bytes;
}

}  // namespace corvel
