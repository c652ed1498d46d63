#pragma once

#include "app/AppState.h"
#include "app/settings/Localisation.h"
#include "library/NoteAction.h"
#include "platform/NotificationCenter.h"
#include "platform/ScopedConnection.h"

#include <functional>
#include <span>
#include <string>

namespace corvel {

enum class CommandID {
    newNote,
    open,
    importMarkdown,
    importFolder,
    saveAsLocalFile,
    exportNote,
    exportLibrary,
    sendAsEmail,
    bold,
    italic,
    strikethrough,
    heading,
    link,
    codeBlock,
    taskList,
    insertImage,
    find,
    replace,
    findNext,
    findPrevious,
    findInAllNotes,
    commandPalette,
    goToNote,
    toggleSplitView,
    togglePreview,
    readerMode,
    previewFile,
    assistant,
    toggleSidebar,
    nextPane,
    previousPane,
    togglePin,
    toggleArchive,
    showInFolder,
    stopTracking,
    moveToTrash,
    switchLanguage,
    themes,
    preferences,
    shortcuts,
    markdownGuide,
    reportProblem,
    checkForUpdates,
    about,
    quit,
};

/// The menu that shows a command.
enum class CommandGroup { file, edit, format, view, note, help, application };

/// One row of the command table: menus, tooltips, the shortcuts window and the window's actions are
/// made from these.
struct Command {
    CommandID id;
    CommandGroup group;
    const char* actionName;  ///< of the window's action, without prefix
    Text label;
    /// GTK's form, for example "<Control><Shift>f"; several with a space between, the first of
    /// which is shown; empty for none.
    const char* accelerator;
    bool isAvailable;  ///< false for what this version cannot do yet: shown, but disabled
};

/// The commands of the menus. A command changes the state or posts a notification; it never calls a
/// view.
class AppCommands {
public:
    /// Does what only a window can: opens the shortcuts, the about window or a folder chooser,
    /// acts on several selected notes, moves between panes, quits.
    using WindowOpener = std::function<void(CommandID)>;

    AppCommands(AppState& state,
                NotificationCenter& notifications,
                Preferences& preferences,
                WindowOpener openWindow);

    static std::span<const Command> table();
    static const Command& command(CommandID id);
    /// "Ctrl+Shift+F", or an empty text.
    static std::string shortcutText(CommandID id);

    /// False for what is not available, for note commands while no note is selected, and for
    /// commands on the text while none can be edited.
    bool isEnabled(CommandID id) const;
    /// Does nothing while the command is not enabled.
    void activate(CommandID id);

private:
    /// False when no single note is selected.
    bool postNoteAction(NoteActionType type);
    /// When it is that mode already: from the preview back to what was before, else to the editor.
    void toggleMode(EditorMode mode);

    AppState& m_state;
    NotificationCenter& m_notifications;
    Preferences& m_preferences;
    WindowOpener m_openWindow;
    EditorMode m_mode;
    EditorMode m_modeBefore = EditorMode::editor;
    ScopedConnection m_modeChanged;
};

}  // namespace corvel
