#include "library/LocalFileNotes.h"

#include "library/NoteText.h"
#include "platform/DistantVolumes.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

void setLink(Note& note, const Bookmark& bookmark) {
    note.sourceFilePath = bookmark.path.string();
    note.bookmarkData = bookmark.encoded();
}

}  // namespace

std::optional<LinkedNote> LocalFileNotes::noteFor(const std::filesystem::path& path) const {
    return otherNote(path, Uuid());
}

// A path says most; then what lies at the other notes' places; last a file that has left its place.
std::optional<LinkedNote> LocalFileNotes::otherNote(const std::filesystem::path& path,
                                                    const Uuid& id) const {
    auto notes = m_notes.fetchLinkedNotes();
    std::erase_if(notes, [&](const LinkedNote& note) { return note.id == id; });
    const auto samePath = std::ranges::find(notes, path.string(), &LinkedNote::path);
    if (samePath != notes.end()) return *samePath;
    if (!distantVolumes::answersFor(path)) return std::nullopt;
    const auto stamp = stampOf(path);
    if (!stamp) return std::nullopt;
    for (const auto& note : notes) {
        if (!distantVolumes::answersFor(note.path)) continue;
        const auto there = stampOf(note.path);
        if (there && there->isSameFile(*stamp)) return note;
        const auto bookmark = there ? std::nullopt : Bookmark::decode(note.bookmarkData);
        if (!bookmark || !bookmark->stamp.isSameFile(*stamp)) continue;
        auto moved = *bookmark;
        moved.path = path;
        m_notes.renewLink(note.id, path.string(), moved.encoded());
        return note;
    }
    return std::nullopt;
}

void LocalFileNotes::refuseIfTaken(const std::filesystem::path& path, const Uuid& id) const {
    if (const auto other = otherNote(path, id))
        throw LinkError(path, LinkError::OtherNote{other->id, other->title});
    if (!distantVolumes::answersFor(path)) throw LinkError(path, FileError::noAnswer(path));
}

Note LocalFileNotes::create(const std::filesystem::path& path) {
    refuseIfTaken(path, Uuid());
    auto linked = m_bookmarks.read(path);
    const auto now = Date::now();
    const FileStamp& stamp = linked.file.stamp;
    Note note;
    note.id = Uuid::random();
    setLink(note, m_bookmarks.make(path, stamp, linked.file.bytes, linked.text));
    note.content = std::move(linked.text);
    note.title = titleFromContent(note.content);
    note.modifiedAt = std::min(linked.file.modifiedAt, now);
    note.createdAt = note.modifiedAt;
    if (stamp.bornAt != 0) note.createdAt = std::min(note.createdAt, Date{stamp.bornAt / 1000});
    m_notes.createOrRefuse(note);
    return note;
}

void LocalFileNotes::stopTracking(const Uuid& id) {
    auto note = m_notes.fetchNote(id);
    if (!note || (!note->sourceFilePath && !note->bookmarkData)) return;
    note->sourceFilePath.reset();
    note->bookmarkData.reset();
    m_notes.update(*note);
}

void LocalFileNotes::upgrade(const Uuid& id, const std::filesystem::path& path) {
    auto note = m_notes.fetchNote(id);
    if (!note) return;
    refuseIfTaken(path, id);
    try {
        const auto stamp = writeWholeFile(path, note->content);
        setLink(*note, m_bookmarks.make(path, stamp, note->content, note->content));
    } catch (const FileError& error) {
        throw LinkError(path, error);
    }
    m_notes.update(*note);
}

void LocalFileNotes::relink(const Uuid& id, const std::filesystem::path& path) {
    auto note = m_notes.fetchNote(id);
    if (!note) return;
    refuseIfTaken(path, id);
    const auto linked = m_bookmarks.read(path);
    // Unless it is the file as the note knows it, the two have nothing in common yet: the note may
    // be the only one to have its text.
    const auto before = note->bookmarkData ? Bookmark::decode(*note->bookmarkData) : std::nullopt;
    Bookmark bookmark{path, linked.file.stamp, {}, {}};
    bookmark.stamp.changedAt = 0;
    if (before && before->fileHash == hashOf(linked.file.bytes)) {
        bookmark.fileHash = before->fileHash;
        bookmark.noteHash = before->noteHash;
    }
    setLink(*note, bookmark);
    m_notes.update(*note);
}

}  // namespace corvel
