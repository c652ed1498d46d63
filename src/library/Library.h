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
    /// Brings the derived rows up to date first. The controller must outlive the library.
    explicit Library(PersistenceController& controller);

    PersistenceController& controller;
    NoteRepository notes;
    FolderRepository folders;
    AttachmentRepository attachments;
    NoteListing listing;
    SearchIndex searchIndex;
};

}  // namespace corvel
