#pragma once

#include "app/ScrollSync.h"
#include "app/settings/Preferences.h"
#include "library/DraftJournal.h"
#include "library/NoteRepository.h"
#include "model/Note.h"
#include "platform/ScopedConnection.h"
#include "platform/StoreError.h"

#include <sigc++/signal.h>

#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// How the open note stands to the store.
struct SaveState {
    enum class Kind { saved, edited, failed };
    Kind kind = Kind::saved;
    std::optional<Date> savedAt;  ///< absent until a save of this session
    std::string reason;           ///< for `failed`: the store's own words
    StoreFault fault = StoreFault::failed;
    bool operator==(const SaveState&) const = default;
};

/// The editing session of the open note: decides when it is saved and when the preview is rendered
/// again. The text itself stays in the view's buffer; it is asked for when it is needed, not at
/// every key.
class EditorViewModel {
public:
    using TextSource = std::function<std::string()>;

    /// What is not saved yet is kept in files of `draftFolder`; an empty one keeps nothing.
    EditorViewModel(NoteRepository& notes,
                    const Preferences& preferences,
                    std::filesystem::path draftFolder = {});
    /// Does not save: the owner calls `save` first on an orderly way out.
    ~EditorViewModel();

    /// Where the text of the open note is read from; set once by the view.
    void setTextSource(TextSource source) { m_source = std::move(source); }

    /// Saves the note that is open, if it was edited, and opens another, or none. An empty new note
    /// that is left is deleted. Emits `signalOpened`. When the save fails the open note stays open
    /// and false is returned.
    bool open(const std::optional<Uuid>& id);
    const std::optional<Note>& note() const { return m_note; }
    /// The open note with what is typed, saved or not.
    std::optional<Note> current() const;

    /// To be called at every change of the text by the user; cheap.
    void contentEdited(const TextEdit& edit);
    /// As above, where it is not known what changed: the draft then needs the whole text.
    void contentEdited();
    /// The user typed in the title field: the title no longer follows the text, unless it is empty.
    void titleEdited(const std::string& title);
    /// The title to show: the user's own, or the one that follows the text.
    std::string title() const;

    /// The file of the open note has another bookmark, or is elsewhere. The store knows it or will
    /// be told by the caller.
    void setLink(const std::string& path, const std::vector<std::uint8_t>& bookmarkData);

    /// Reads the folders of the open note anew, after links of notes to folders changed.
    void refreshFolders();

    /// Saves now if something was edited. False when the store refused; the text stays with the
    /// view and the next save tries again.
    bool save();
    const SaveState& saveState() const { return m_saveState; }
    /// True when what is not saved could not even be kept for the next start.
    bool isAtRisk() const { return isEdited() && m_draft.isBehind(); }
    bool isEdited() const { return m_contentEdited || m_titleEdited; }
    /// Words of the text as of the last pause.
    std::int32_t wordCount() const { return m_wordCount; }
    /// Minutes to read it at 200 words a minute, at least 1.
    int readingMinutes() const;

    /// Where the open note is scrolled to, in editor and preview.
    ScrollSync& scroll() { return m_scroll; }

    /// Another note is open, or none, or the open one was changed by others: views read everything
    /// anew.
    sigc::signal<void()>& signalOpened() { return m_opened; }
    /// The text rested for a moment: render it. Carries the text.
    sigc::signal<void(const std::string&)>& signalRender() { return m_render; }
    /// Pin, archive, trash or folders of the open note changed; its text did not.
    sigc::signal<void()>& signalStateChanged() { return m_stateChanged; }
    sigc::signal<void()>& signalSaveStateChanged() { return m_saveStateChanged; }
    /// The store has taken the edits of the open note.
    sigc::signal<void()>& signalSaved() { return m_saved; }
    /// The open note got another text in the store while it was edited. The edited text stays and
    /// will be saved; whoever listens keeps the other one, which is carried.
    sigc::signal<void(const Note& theirs)>& signalConflict() { return m_conflict; }
    /// Title that follows the text or word count changed.
    sigc::signal<void()>& signalDerivedChanged() { return m_derivedChanged; }

private:
    void startSession();
    void removeUntouched(const Uuid& id);
    void textEdited();
    void edited();
    void keepDraft();
    void scheduleSave();
    void pauseReached();
    void deriveFrom(const std::string& content);
    std::string currentText() const;
    bool write(Note note);
    void markSaved(std::optional<Date> savedAt);
    void noteChangedElsewhere(const NoteChange& change);
    void takeOverState(const Note& stored);

    NoteRepository& m_notes;
    const Preferences& m_preferences;
    DraftJournal m_draft;
    TextSource m_source;
    ScrollSync m_scroll;
    std::optional<Note> m_note;
    bool m_contentEdited = false;
    bool m_titleEdited = false;
    bool m_titleFollows = false;
    bool m_isSaving = false;
    std::int32_t m_wordCount = 0;
    SaveState m_saveState;
    ScopedConnection m_pauseTimer;
    ScopedConnection m_saveTimer;
    ScopedConnection m_draftTimer;
    ScopedConnection m_changes;
    sigc::signal<void()> m_opened;
    sigc::signal<void(const std::string&)> m_render;
    sigc::signal<void()> m_stateChanged;
    sigc::signal<void()> m_saveStateChanged;
    sigc::signal<void()> m_saved;
    sigc::signal<void(const Note&)> m_conflict;
    sigc::signal<void()> m_derivedChanged;
};

}  // namespace corvel
