#pragma once

#include "library/NoteRepositoryProtocol.h"
#include "library/NoteSummary.h"

#include <sigc++/signal.h>

namespace corvel {

class ViewContext;

/// What happened to a stored note. `note` is set when its text was written.
struct NoteChange {
    enum class Kind { created, updated, stateChanged, deleted };
    Kind kind;
    RowId row;
    Uuid id;
    const Note* note = nullptr;
};

/// The only code that reads and writes note entities.
class NoteRepository : public NoteRepositoryProtocol {
public:
    explicit NoteRepository(ViewContext& context);  // must outlive the repository

    std::vector<Note> fetchNotes(const SidebarFilter& filter, SortOption sort) const override;
    std::optional<Note> fetchNote(const Uuid& id) const override;
    std::optional<Note> fetchNoteBySourceFile(const std::string& sourceFilePath) const override;
    std::vector<Note> search(std::string_view query) const override;

    void create(const Note& note) override;
    void update(const Note& note) override;
    void togglePin(const Uuid& id) override;
    void toggleArchive(const Uuid& id) override;
    void moveToTrash(const Uuid& id) override;
    void restoreFromTrash(const Uuid& id) override;
    void deletePermanently(const Uuid& id) override;

    /// As `create`, left unsaved and unannounced: for an import that saves many at once.
    void createUnsaved(const Note& note);

    /// Emitted after the store has taken a change.
    sigc::signal<void(const NoteChange&)>& signalChanged() { return m_changed; }

private:
    ViewContext& m_context;
    sigc::signal<void(const NoteChange&)> m_changed;
};

}  // namespace corvel
