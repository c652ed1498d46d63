#pragma once

#include "library/NoteRepositoryProtocol.h"
#include "library/NoteSummary.h"
#include "library/NoteWriter.h"
#include "model/ViewContext.h"

#include <sigc++/signal.h>

#include <functional>

namespace corvel {

class PersistenceController;

/// What happened to a stored note.
struct NoteChange {
    /// `marked`: what neither text nor trash tell of, a pin, the archive, the file it mirrors.
    enum class Kind { created, updated, marked, trashed, restored, deleted };
    Kind kind;
    RowId row;
    Uuid id;
    const Note* note = nullptr;  ///< what was written; set for `created` and `updated`
};

/// A note that mirrors a file, without its text.
struct LinkedNote {
    Uuid id;
    std::string title;
    std::string path;  ///< any bytes
    std::vector<std::uint8_t> bookmarkData;
    bool isTrashed = false;
};

/// The only code that reads and writes note entities.
class NoteRepository : public NoteRepositoryProtocol {
public:
    explicit NoteRepository(PersistenceController& controller);  // must outlive the repository

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

    /// As `create`; of a note that cannot be saved nothing stays for the next save, so that trying
    /// again makes no second one. For text that is safe elsewhere, outside a group.
    void createOrRefuse(const Note& note);

    /// Every note that mirrors a file, those in archive and trash included.
    std::vector<LinkedNote> fetchLinkedNotes() const;
    /// Where the file of note `id` is now: no change of the note. Announced only when the path is
    /// another one.
    void renewLink(const Uuid& id,
                   const std::string& path,
                   const std::vector<std::uint8_t>& bookmarkData);

    /// As `create`, left unsaved and unannounced: for an import, which saves many at once and then
    /// has lists and the search index read the store anew.
    void createUnsaved(const Note& note);
    /// Several as one change.
    void createUnsaved(std::vector<std::shared_ptr<const noteWriter::PreparedNote>> notes);

    /// Emitted after the store has taken a change, also when it could only keep it for the next
    /// save.
    sigc::signal<void(const NoteChange&)>& signalChanged() { return m_changed; }

private:
    using RowChange = std::function<void(Database&, RowId)>;

    void applyAndSave(ViewContext::Change change,
                      std::string key,
                      NoteChange::Kind kind,
                      const Uuid& id,
                      const Note* note);
    void changeState(const Uuid& id, NoteChange::Kind kind, RowChange change);

    PersistenceController& m_controller;
    ViewContext& m_context;
    sigc::signal<void(const NoteChange&)> m_changed;
};

}  // namespace corvel
