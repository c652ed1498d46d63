#pragma once

#include "library/BookmarkManager.h"
#include "library/NoteRepository.h"

#include <filesystem>
#include <optional>
#include <string>

namespace corvel {

/// Notes that mirror files: makes them, ends it, and sees to it that no two have one file. Members
/// throw LinkError and StoreError.
class LocalFileNotes {
public:
    explicit LocalFileNotes(NoteRepository& notes) : m_notes(notes) {}  // must outlive this object

    /// The note that has this file, whichever way the path leads to it. A file that was moved from
    /// the place its note knows is found, too; the note then knows the new one.
    std::optional<LinkedNote> noteFor(const std::filesystem::path& path) const;

    /// Stores a note with the file's text.
    Note create(const std::filesystem::path& path);
    /// The note stays as an ordinary one, the file as it is.
    void stopTracking(const Uuid& id);
    /// Writes the note to the file, over what it may hold, and links them.
    void upgrade(const Uuid& id, const std::filesystem::path& path);
    /// Links a note with a file that holds something else than the note: which of the two goes is
    /// decided when the note is opened.
    void relink(const Uuid& id, const std::filesystem::path& path);

private:
    std::optional<LinkedNote> otherNote(const std::filesystem::path& path, const Uuid& id) const;
    void refuseIfTaken(const std::filesystem::path& path, const Uuid& id) const;

    NoteRepository& m_notes;
    BookmarkManager m_bookmarks;
};

}  // namespace corvel
