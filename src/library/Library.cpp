#include "library/Library.h"

#include "library/DerivedRows.h"
#include "library/NoteReader.h"
#include "model/PersistenceController.h"

namespace corvel {

namespace {

PersistenceController& broughtUpToDate(PersistenceController& controller) {
    // The sample notes of a store in memory carry counts of their own.
    derivedRows::bringUpToDate(controller.viewContext(), controller.iCloudEnabled()
                                                             ? derivedRows::WordCounts::recount
                                                             : derivedRows::WordCounts::keep);
    return controller;
}

}  // namespace

Library::Library(PersistenceController& store)
    : controller(broughtUpToDate(store))
    , notes(store)
    , folders(store.viewContext())
    , attachments(store)
    , listing(store.viewContext())
    , searchIndex(store.viewContext()) {
    notes.signalChanged().connect(sigc::mem_fun(*this, &Library::updateSearchIndex));
}

void Library::updateSearchIndex(const NoteChange& change) {
    using Kind = NoteChange::Kind;
    if (change.kind == Kind::marked) return;
    std::optional<Note> restored;
    if (change.kind == Kind::restored)
        restored = noteReader::readText(controller.viewContext().database(), change.row);
    const Note* note = restored ? &*restored : change.note;
    if (note == nullptr || note->isTrashed) {
        searchIndex.noteRemoved(change.row);
    } else {
        searchIndex.noteChanged(change.row, note->title, note->content, note->modifiedAt);
    }
}

}  // namespace corvel
