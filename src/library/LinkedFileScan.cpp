#include "library/LinkedFileScan.h"

#include "library/NoteText.h"
#include "platform/DistantVolumes.h"

#include <algorithm>
#include <utility>

namespace corvel {

LinkedFileScan::LinkedFileScan(NoteRepository& notes) : m_notes(notes) {}

bool LinkedFileScan::work(std::chrono::milliseconds budget, const std::optional<Uuid>& openNote) {
    const auto deadline = std::chrono::steady_clock::now() + budget;
    if (!std::exchange(m_isStarted, true)) m_linked = m_notes.fetchLinkedNotes();
    while (m_next < m_linked.size()) {
        const auto& linked = m_linked[m_next++];
        if (linked.id != openNote && !linked.isTrashed) look(linked);
        if (std::chrono::steady_clock::now() >= deadline) break;
    }
    return m_next < m_linked.size();
}

// Between two slices somebody may have opened the note, stopped tracking it or linked it anew.
std::optional<Note> LinkedFileScan::noteStill(const LinkedNote& linked) const {
    auto note = m_notes.fetchNote(linked.id);
    const bool isStill = note && !note->isTrashed && note->sourceFilePath == linked.path &&
                         note->bookmarkData == linked.bookmarkData;
    return isStill ? std::move(note) : std::nullopt;
}

void LinkedFileScan::look(const LinkedNote& linked) {
    auto bookmark = Bookmark::decode(linked.bookmarkData);
    if (!bookmark) return;
    bookmark->path = linked.path;
    if (!distantVolumes::answersFor(bookmark->path)) return;
    const auto stamp = stampOf(bookmark->path);
    if (stamp && *stamp == bookmark->stamp) return;
    const auto found = m_bookmarks.resolve(*bookmark);
    if (found.state == BookmarkManager::State::missing) return;
    bookmark->path = found.path;
    compare(linked, *std::move(bookmark));
}

void LinkedFileScan::renew(const LinkedNote& linked, const Bookmark& bookmark) {
    m_notes.renewLink(linked.id, bookmark.path.string(), bookmark.encoded());
}

void LinkedFileScan::compare(const LinkedNote& linked, Bookmark bookmark) {
    LinkedFile file;
    try {
        file = m_bookmarks.read(bookmark.path);
    } catch (const LinkError&) {
        return;  // gone since it was listed, or no text any more: its note will say so
    }
    auto note = noteStill(linked);
    if (!note) return;
    auto renewed = m_bookmarks.make(bookmark.path, file.file.stamp, file.file.bytes, file.text);
    const bool isFileChanged = renewed.fileHash != bookmark.fileHash;
    bookmark.stamp = renewed.stamp;
    if (!isFileChanged) return renew(linked, bookmark);
    if (note->content == file.text) return renew(linked, renewed);
    // The hashes stay those of the last agreement: the note, opened, shows both versions.
    if (hashOf(note->content) != bookmark.noteHash) return renew(linked, bookmark);
    if (note->title == titleFromContent(note->content)) note->title = titleFromContent(file.text);
    note->content = std::move(file.text);
    note->modifiedAt = std::min(file.file.modifiedAt, Date::now());
    note->sourceFilePath = renewed.path.string();
    note->bookmarkData = renewed.encoded();
    m_notes.update(*note);
}

}  // namespace corvel
