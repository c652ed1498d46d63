#pragma once

#include "library/AttachmentRepository.h"
#include "library/FolderRepository.h"
#include "library/NoteListing.h"
#include "library/NoteRepository.h"
#include "library/SearchIndex.h"

namespace corvel {

class PersistenceController;

/// The services over one store, made once and handed to the view models.
class Library {
public:
    /// Brings the derived rows up to date first. The store must outlive the library.
    explicit Library(PersistenceController& store);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    PersistenceController& controller;
    NoteRepository notes;
    FolderRepository folders;
    AttachmentRepository attachments;
    NoteListing listing;
    SearchIndex searchIndex;

private:
    void updateSearchIndex(const NoteChange& change);
};

}  // namespace corvel
