#pragma once

#include "library/SidebarFilter.h"
#include "library/SortOption.h"
#include "model/Note.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Reads and writes notes as records. An operation on an id that no note has does nothing.
/// Mutations save before they return. Every member throws StoreError.
class NoteRepositoryProtocol {
public:
    virtual ~NoteRepositoryProtocol() = default;

    /// The filter's notes, pinned ones first, then in the order of `sort`. Full records: for a list
    /// use NoteListing.
    virtual std::vector<Note> fetchNotes(const SidebarFilter& filter, SortOption sort) const = 0;
    virtual std::optional<Note> fetchNote(const Uuid& id) const = 0;
    virtual std::optional<Note> fetchNoteBySourceFile(const std::string& sourceFilePath) const = 0;
    /// Every note outside the trash, archived ones included, whose title or content contains
    /// `query`, ignoring case and diacritics; newest modification first.
    virtual std::vector<Note> search(std::string_view query) const = 0;

    /// Stores a new note with the record's tags and those found in its content; words are counted
    /// here.
    virtual void create(const Note& note) = 0;
    /// Copies the record into the stored note and derives tags and words from the content. `id`,
    /// `createdAt`, `isPinned`, `isArchived` and folders are not written.
    virtual void update(const Note& note) = 0;
    virtual void togglePin(const Uuid& id) = 0;
    virtual void toggleArchive(const Uuid& id) = 0;
    virtual void moveToTrash(const Uuid& id) = 0;
    virtual void restoreFromTrash(const Uuid& id) = 0;
    virtual void deletePermanently(const Uuid& id) = 0;
};

}  // namespace corvel
