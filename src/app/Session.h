#pragma once

#include "ai/AIServices.h"
#include "app/AppCommands.h"
#include "app/AppState.h"
#include "app/BackupKeeper.h"
#include "app/CloudKitSyncEngine.h"
#include "app/DraftRecovery.h"
#include "app/EditorViewModel.h"
#include "app/LinkedFileSession.h"
#include "app/PaletteViewModel.h"
#include "app/settings/Localisation.h"
#include "app/settings/Preferences.h"
#include "library/Library.h"
#include "library/LinkedFileScan.h"
#include "library/MarkdownImporter.h"
#include "library/NoteListViewModel.h"
#include "library/SidebarViewModel.h"
#include "markdown/MarkdownParserService.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "themes/ThemeManager.h"

#include <memory>
#include <vector>

namespace corvel {

/// Everything a main window stands on, made once and tied together: the state drives the list and
/// the editor, the list's news drive the state. Free of widgets.
class Session {
public:
    /// `controller`, `defaults` and `themesOfRun` must outlive the session.
    Session(PersistenceController& controller,
            UserDefaults& defaults,
            ThemeManager& themesOfRun,
            AppCommands::WindowOpener openWindow);

    Preferences preferences;
    Localisation texts;
    ThemeManager& themes;
    AIServices ai;
    CloudKitSyncEngine syncEngine;
    NotificationCenter notifications;
    AppState state;
    Library library;
    NoteListViewModel list;
    SidebarViewModel sidebar;
    EditorViewModel editor;
    LinkedFileSession linkedFile;
    AppCommands commands;
    RecentNotes recentNotes;
    PaletteViewModel palette;
    MarkdownParserService parser;
    MarkdownImporter importer;
    BackupKeeper backups;

    /// Filter, order, mode and note of the last run, or the first note; with the first load of list
    /// and sidebar. What a crash left unsaved is in the store before.
    void start();
    /// Saves the open note and whatever else is unsaved, and remembers what `start` brings back.
    /// False when the store refused: the caller then asks before anything is closed.
    bool finish();

    /// Notes that got unsaved words of a crashed run back; emitted at most once, by `start`.
    sigc::signal<void(const std::vector<RecoveredNote>&)>& signalRecovered() { return m_recovered; }
    /// The open note changed elsewhere while it was edited; the other text is a note of its own
    /// now.
    sigc::signal<void(const Note& copy)>& signalOtherVersionKept() { return m_otherVersionKept; }
    /// Selects a note, in another filter when the present list does not have it.
    void reveal(const Uuid& id);

private:
    void bindList();
    void bindEditor();
    void updateSearch();
    void openSelected();
    void showCreated(const Uuid& id);
    void keepOtherVersion(const Note& theirs);
    void forgetMissingFolder();
    void rememberState();
    bool saveRest();
    void scanLinkedFiles();

    sigc::signal<void(const std::vector<RecoveredNote>&)> m_recovered;
    sigc::signal<void(const Note&)> m_otherVersionKept;
    std::unique_ptr<LinkedFileScan> m_scan;
    ScopedConnection m_scanning;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
