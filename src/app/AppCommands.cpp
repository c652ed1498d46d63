#include "app/AppCommands.h"

#include "library/Notifications.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvel {

namespace {

using Group = CommandGroup;
using ID = CommandID;

constexpr bool kReady = true;
constexpr bool kLater = false;  // what this version cannot do yet

constexpr std::array kCommands{
    Command{
        ID::newNote, Group::file, "new-note", {"Nowa notatka", "New Note"}, "<Control>n", kReady},
    Command{ID::open, Group::file, "open", {"Otwórz...", "Open..."}, "<Control><Shift>o", kReady},
    Command{ID::importMarkdown,
            Group::file,
            "import-markdown",
            {"Importuj Markdown...", "Import Markdown..."},
            "<Control>o",
            kReady},
    Command{ID::importFolder,
            Group::file,
            "import-folder",
            {"Importuj folder...", "Import Folder..."},
            "<Control><Alt>o",
            kReady},
    Command{ID::saveAsLocalFile,
            Group::file,
            "save-as-local-file",
            {"Zapisz jako plik lokalny...", "Save as Local File..."},
            "<Control><Shift>s",
            kReady},
    Command{ID::exportNote,
            Group::file,
            "export",
            {"Eksportuj...", "Export..."},
            "<Control>e <Control><Shift>e",
            kReady},
    Command{ID::exportLibrary,
            Group::file,
            "export-library",
            {"Eksportuj bibliotekę…", "Export Library…"},
            "",
            kReady},
    Command{ID::sendAsEmail,
            Group::file,
            "send-as-email",
            {"Wyślij e-mailem...", "Send as Email..."},
            "<Control>m",
            kReady},
    Command{ID::bold, Group::format, "bold", {"Pogrubienie", "Bold"}, "<Control>b", kReady},
    Command{ID::italic, Group::format, "italic", {"Kursywa", "Italic"}, "<Control>i", kReady},
    Command{ID::strikethrough,
            Group::format,
            "strikethrough",
            {"Przekreślenie", "Strikethrough"},
            "",
            kReady},
    Command{ID::heading, Group::format, "heading", {"Nagłówek", "Heading"}, "", kReady},
    Command{ID::link, Group::format, "link", {"Wstaw link", "Insert Link"}, "<Control>k", kReady},
    Command{ID::codeBlock,
            Group::format,
            "code-block",
            {"Wstaw blok kodu", "Insert Code Block"},
            "<Control><Shift>k",
            kReady},
    Command{ID::taskList,
            Group::format,
            "task-list",
            {"Lista zadań", "Task List"},
            "<Control>l",
            kReady},
    Command{ID::insertImage,
            Group::format,
            "insert-image",
            {"Wstaw obraz...", "Insert Image..."},
            "<Control><Shift>i",
            kReady},
    Command{
        ID::find, Group::edit, "find", {"Znajdź w notatce", "Find in Note"}, "<Control>f", kReady},
    Command{ID::replace,
            Group::edit,
            "replace",
            {"Znajdź i zamień", "Find and Replace"},
            "<Control>h",
            kReady},
    Command{ID::findNext,
            Group::edit,
            "find-next",
            {"Znajdź następne", "Find Next"},
            "<Control>g F3",
            kReady},
    Command{ID::findPrevious,
            Group::edit,
            "find-previous",
            {"Znajdź poprzednie", "Find Previous"},
            "<Control><Shift>g <Shift>F3",
            kReady},
    Command{ID::findInAllNotes,
            Group::edit,
            "find-in-all-notes",
            {"Znajdź we wszystkich notatkach", "Find in All Notes"},
            "<Control><Shift>f",
            kReady},
    Command{ID::commandPalette,
            Group::view,
            "command-palette",
            {"Paleta poleceń", "Command Palette"},
            "<Control><Shift>p",
            kReady},
    Command{ID::goToNote,
            Group::view,
            "go-to-note",
            {"Przejdź do notatki...", "Go to Note..."},
            "<Control>t",
            kReady},
    Command{ID::toggleSplitView,
            Group::view,
            "toggle-split-view",
            {"Przełącz widok podzielony", "Toggle Split View"},
            "<Control><Shift>l",
            kReady},
    Command{ID::togglePreview,
            Group::view,
            "toggle-preview",
            {"Przełącz podgląd", "Toggle Preview"},
            "<Control>p",
            kReady},
    Command{ID::readerMode,
            Group::view,
            "reader-mode",
            {"Tryb czytnika", "Reader Mode"},
            "<Control>r",
            kReady},
    Command{ID::previewFile,
            Group::view,
            "preview-file",
            {"Podgląd pliku Markdown...", "Preview Markdown File..."},
            "<Control><Alt>p",
            kReady},
    Command{ID::assistant,
            Group::view,
            "assistant",
            {"Asystent AI", "AI Assistant"},
            "<Control>j",
            kReady},
    Command{ID::toggleSidebar,
            Group::view,
            "toggle-sidebar",
            {"Pokaż lub ukryj panel boczny", "Show or Hide Sidebar"},
            "F9",
            kReady},
    Command{ID::nextPane, Group::view, "next-pane", {"Następny panel", "Next Pane"}, "F6", kReady},
    Command{ID::previousPane,
            Group::view,
            "previous-pane",
            {"Poprzedni panel", "Previous Pane"},
            "<Shift>F6",
            kReady},
    Command{ID::togglePin,
            Group::note,
            "toggle-pin",
            {"Przypnij lub odepnij", "Pin or Unpin"},
            "<Control>d",
            kReady},
    Command{ID::toggleArchive,
            Group::note,
            "toggle-archive",
            {"Archiwizuj lub przywróć", "Archive or Unarchive"},
            "<Control><Shift>a",
            kReady},
    Command{ID::showInFolder,
            Group::note,
            "show-in-folder",
            {"Pokaż plik w folderze", "Show File in Folder"},
            "",
            kReady},
    Command{ID::stopTracking,
            Group::note,
            "stop-tracking",
            {"Przestań śledzić plik", "Stop Tracking"},
            "",
            kReady},
    Command{ID::moveToTrash,
            Group::note,
            "move-to-trash",
            {"Przenieś do kosza", "Move to Trash"},
            "<Control><Shift>Delete",
            kReady},
    Command{ID::switchLanguage,
            Group::application,
            "switch-language",
            {"Switch to English", "Przełącz na polski"},
            "",
            kReady},
    Command{ID::themes, Group::application, "themes", {"Motywy...", "Themes..."}, "", kReady},
    Command{ID::preferences,
            Group::application,
            "preferences",
            {"Ustawienia", "Settings"},
            "<Control>comma",
            kReady},
    Command{ID::shortcuts,
            Group::help,
            "shortcuts",
            {"Skróty klawiszowe", "Keyboard Shortcuts"},
            "<Control>question",
            kReady},
    Command{ID::markdownGuide,
            Group::help,
            "markdown-guide",
            {"Przewodnik Markdown", "Markdown Guide"},
            "<Control>slash",
            kReady},
    Command{ID::reportProblem,
            Group::help,
            "report-problem",
            {"Zgłoś problem…", "Report a Problem…"},
            "",
            kReady},
    Command{ID::checkForUpdates,
            Group::help,
            "check-for-updates",
            {"Sprawdź aktualizacje...", "Check for Updates..."},
            "",
            kReady},
    Command{ID::about, Group::help, "about", {"O programie", "About qno Corvel"}, "", kReady},
    Command{ID::quit, Group::application, "quit", {"Zakończ", "Quit"}, "<Control>q", kReady},
};

constexpr bool standsInOrder() {
    for (std::size_t i = 0; i < kCommands.size(); ++i) {
        if (static_cast<std::size_t>(kCommands[i].id) != i) return false;
    }
    return true;
}
static_assert(standsInOrder(), "a command's row is found by its id");

bool isNoteCommand(CommandID id) {
    return id == ID::togglePin || id == ID::toggleArchive || id == ID::moveToTrash ||
           id == ID::insertImage || id == ID::sendAsEmail || id == ID::exportNote ||
           id == ID::readerMode;
}

// Need a note that mirrors a file.
bool isLinkCommand(CommandID id) {
    return id == ID::showInFolder || id == ID::stopTracking;
}

// Can be done with several notes at once.
bool isListCommand(CommandID id) {
    return id == ID::togglePin || id == ID::toggleArchive || id == ID::moveToTrash ||
           id == ID::exportNote;
}

// Change the text of the open note.
bool isTextCommand(CommandID id) {
    return (id >= ID::bold && id <= ID::taskList) || id == ID::replace;
}

bool isFindCommand(CommandID id) {
    return id == ID::find || id == ID::findNext || id == ID::findPrevious;
}

std::string keyName(std::string_view key) {
    if (key == "comma") return ",";
    if (key == "question") return "?";
    if (key == "slash") return "/";
    std::string name(key);
    if (name.size() == 1)
        name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return name;
}

}  // namespace

AppCommands::AppCommands(AppState& state,
                         NotificationCenter& notifications,
                         Preferences& preferences,
                         WindowOpener openWindow)
    : m_state(state)
    , m_notifications(notifications)
    , m_preferences(preferences)
    , m_openWindow(std::move(openWindow))
    , m_mode(state.editorMode.get())
    , m_modeChanged(state.editorMode.signalChanged().connect(
          [this] { m_modeBefore = std::exchange(m_mode, m_state.editorMode.get()); })) {}

std::span<const Command> AppCommands::table() {
    return kCommands;
}

const Command& AppCommands::command(CommandID id) {
    return kCommands[static_cast<std::size_t>(id)];
}

std::string AppCommands::shortcutText(CommandID id) {
    std::string_view rest = command(id).accelerator;
    rest = rest.substr(0, rest.find(' '));
    std::string text;
    for (const auto& [mark, name] : {std::pair<std::string_view, const char*>{"<Control>", "Ctrl+"},
                                     {"<Shift>", "Shift+"},
                                     {"<Alt>", "Alt+"}}) {
        if (!rest.starts_with(mark)) continue;
        text += name;
        rest.remove_prefix(mark.size());
    }
    return rest.empty() ? std::string() : text + keyName(rest);
}

bool AppCommands::isEnabled(CommandID id) const {
    if (!command(id).isAvailable) return false;
    if (isListCommand(id) && m_state.hasSeveralSelected()) return true;
    if (isNoteCommand(id)) return m_state.selectedNoteID.get().has_value();
    const auto& note = m_state.selectedNote.get();
    if (isLinkCommand(id)) return note && note->sourceFilePath;
    if (id == ID::saveAsLocalFile) return note && !note->isTrashed;
    if (isFindCommand(id)) return note.has_value();
    if (!isTextCommand(id)) return true;
    // Finding shows the editor; what changes the text needs it in sight.
    const bool isShown = id == ID::replace || m_state.editorMode.get() != EditorMode::preview;
    return note && !note->isTrashed && isShown;
}

void AppCommands::activate(CommandID id) {
    if (!isEnabled(id)) return;
    switch (id) {
        case ID::newNote:
            return m_notifications.post(notifications::createNewNote);
        case ID::importMarkdown:
            return m_notifications.post(notifications::importMarkdown);
        case ID::exportNote:
            return m_state.isExportSheetPresented.set(true);
        case ID::sendAsEmail:
            return m_notifications.post(notifications::sendAsEmail);
        case ID::readerMode:
            return m_notifications.post(notifications::openReaderMode);
        case ID::bold:
            return m_notifications.post(notifications::formatBold);
        case ID::italic:
            return m_notifications.post(notifications::formatItalic);
        case ID::strikethrough:
            return m_notifications.post(notifications::formatStrikethrough);
        case ID::heading:
            return m_notifications.post(notifications::formatHeading);
        case ID::link:
            return m_notifications.post(notifications::formatLink);
        case ID::codeBlock:
            return m_notifications.post(notifications::formatCodeBlock);
        case ID::taskList:
            return m_notifications.post(notifications::formatTaskList);
        case ID::findInAllNotes:
            m_state.isSearchActive.set(true);
            break;  // the window gives the search field the focus, also when it searches already
        case ID::assistant:
            return m_state.isAIAssistantVisible.set(!m_state.isAIAssistantVisible.get());
        case ID::toggleSplitView:
            return toggleMode(EditorMode::split);
        case ID::togglePreview:
            return toggleMode(EditorMode::preview);
        case ID::togglePin:
            if (postNoteAction(NoteActionType::togglePin)) return;
            break;
        case ID::toggleArchive:
            if (postNoteAction(NoteActionType::toggleArchive)) return;
            break;
        case ID::moveToTrash:
            if (postNoteAction(NoteActionType::moveToTrash)) return;
            break;
        case ID::switchLanguage:
            return m_preferences.setAppLanguage(m_preferences.appLanguage() == "en" ? "pl" : "en");
        default:
            break;
    }
    if (m_openWindow) m_openWindow(id);
}

// Which notes are selected when there are several only the window knows.
bool AppCommands::postNoteAction(NoteActionType type) {
    const auto& id = m_state.selectedNoteID.get();
    if (!id) return false;
    m_notifications.post(notifications::noteAction, NoteAction{*id, type});
    return true;
}

// A second use goes back: from the preview to the view before, from the split view to the editor.
void AppCommands::toggleMode(EditorMode mode) {
    const auto back = mode == EditorMode::preview ? m_modeBefore : EditorMode::editor;
    m_state.editorMode.set(m_mode == mode ? back : mode);
}

}  // namespace corvel
