#pragma once

#include "app/EditorViewModel.h"
#include "app/settings/Localisation.h"
#include "library/BookmarkManager.h"
#include "library/MovedFileSearch.h"
#include "library/NoteListViewModel.h"
#include "platform/FileMonitor.h"
#include "platform/NotificationCenter.h"

#include <sigc++/signal.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// How the open note stands to the file that it mirrors.
struct LinkState {
    enum class Kind {
        none,  ///< no note, or an ordinary one
        inStep,
        conflict,    ///< both were changed; nothing is written until the user has decided
        vanished,    ///< the file is not where it was and was not found
        unreadable,  ///< `error` says why; what the file holds is not known
        unwritable,  ///< the note has what the file has not; `error` says why
    };
    Kind kind = Kind::none;
    std::filesystem::path path;
    std::optional<LinkError> error;
};

/// Keeps the open note and its file in step: what is saved is written to the file, a file that was
/// changed by others is read again, and where both changed the user is asked. A file that is found
/// as it was at the last look is not even read.
class LinkedFileSession {
public:
    struct Versions {
        std::string mine;
        std::string theirs;
    };

    /// All must outlive the session.
    LinkedFileSession(EditorViewModel& editor,
                      NoteListViewModel& list,
                      NoteRepository& notes,
                      NotificationCenter& notifications,
                      const Localisation& texts);
    ~LinkedFileSession();

    const LinkState& state() const { return m_state; }
    sigc::signal<void()>& signalStateChanged() { return m_stateChanged; }
    /// A note was left whose last changes its file did not take. They are in the store and are
    /// written when it is opened again.
    sigc::signal<void(const LinkState&)>& signalLeftUnwritten() { return m_leftUnwritten; }

    /// Looks at the file now: to be called when it may have changed unnoticed, and to try again
    /// what failed. What time may mend, a full disk or a silent server, is tried again by itself.
    void check() { settle(Certainty::final); }
    /// Stores what is only noted so far; the editor's `save` comes first.
    void flush();

    // A conflict. What is chosen among is what was `seen`: when the file has changed again, or
    // something fails, the conflict goes on and false is returned.
    /// Both texts as they are now; none when there is no conflict.
    std::optional<Versions> versions() const;
    /// The file gets the note's text.
    bool keepMine(const Versions& seen);
    /// The note gets the file's text, as a step that the editor can undo.
    bool takeTheirs(const Versions& seen);
    /// The note gets the file's text; its own becomes a note beside it.
    bool keepBoth(const Versions& seen);

    // A file that vanished.
    LinkOutcome locate(const std::filesystem::path& path);
    LinkOutcome writeAgain();
    void keepAsOrdinary();

private:
    /// A file that is missing or empty may be one that somebody is just writing.
    enum class Certainty { event, final };

    void follow();
    void begin();
    void leave();
    void settle(Certainty certainty);
    void settleNow(Certainty certainty);
    bool isAsKnown(const FileStamp& stamp) const;
    void compare(LinkedFile file, Certainty certainty);
    bool isFileChanged(const LinkedFile& file) const;
    bool isNoteChanged(const std::string& mine) const;
    bool waits(Certainty certainty);
    void reached(LinkedFile file);
    void reload(LinkedFile file);
    void writeBack(const LinkedFile& file);
    void handleMissing(Certainty certainty);
    void search();
    void moved(const std::filesystem::path& path);
    bool isStill(const Versions& seen);
    void tryAgainLater();
    void setState(LinkState::Kind kind, std::optional<LinkError> error = {});
    void scheduleRenewal();
    void renewBookmark();

    EditorViewModel& m_editor;
    NoteListViewModel& m_list;
    NoteRepository& m_notes;
    NotificationCenter& m_notifications;
    const Localisation& m_texts;
    BookmarkManager m_bookmarks;
    FileMonitor m_monitor;

    std::optional<Uuid> m_noteID;
    Bookmark m_bookmark;               ///< as stored
    std::optional<LinkedFile> m_base;  ///< file and note when they last were the same in this run
    std::optional<LinkedFile> m_theirs;
    LinkState m_state;
    bool m_isSettling = false;
    bool m_looksAgain = false;
    std::unique_ptr<MovedFileSearch> m_search;
    ScopedConnection m_searching;
    ScopedConnection m_doubt;
    ScopedConnection m_renewal;
    ScopedConnection m_retry;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_stateChanged;
    sigc::signal<void(const LinkState&)> m_leftUnwritten;
};

}  // namespace corvel
