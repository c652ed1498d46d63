#include "app/Session.h"

#include "app/texts/DraftTexts.h"
#include "model/PersistenceController.h"
#include "platform/Log.h"

#include <glibmm/main.h>

#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kScanSlice{4};
constexpr const char* kLastNote = "lastNote";
constexpr const char* kLastFilter = "lastFilter";
constexpr const char* kSortOption = "sortOption";

std::optional<MarkdownParserService::AttachmentData> attachmentData(
    const AttachmentRepository& attachments, const Uuid& id) {
    try {
        auto found = attachments.fetchAttachment(id);
        if (!found || found->data.empty()) return std::nullopt;
        return MarkdownParserService::AttachmentData{std::move(found->mimeType),
                                                     std::move(found->data)};
    } catch (const StoreError&) {
        return std::nullopt;
    }
}

}  // namespace

Session::Session(PersistenceController& controller,
                 UserDefaults& defaults,
                 ThemeManager& themesOfRun,
                 AppCommands::WindowOpener openWindow)
    : preferences(defaults)
    , texts(preferences)
    , themes(themesOfRun)
    , ai(preferences)
    , syncEngine(controller)
    , library(controller)
    , list(library, notifications)
    , sidebar(library, texts, notifications)
    , editor(library.notes, preferences, controller.draftFolder())
    , linkedFile(editor, list, library.notes, notifications, texts)
    , commands(state, notifications, preferences, std::move(openWindow))
    , recentNotes(defaults)
    , palette(library, texts, state, commands, recentNotes)
    , parser([this](const Uuid& id) { return attachmentData(library.attachments, id); })
    , importer(library)
    , backups(controller, [this] { return editor.save(); }) {
    bindList();
    bindEditor();
}

void Session::bindList() {
    m_connections.emplace_back(state.sidebarFilter.signalChanged().connect([this] {
        state.isSearchActive.set(false);
        list.setFilter(state.sidebarFilter.get());
        scanLinkedFiles();
    }));
    m_connections.emplace_back(state.sortOption.signalChanged().connect(
        [this] { list.setSortOption(state.sortOption.get()); }));
    m_connections.emplace_back(
        state.searchQuery.signalChanged().connect(sigc::mem_fun(*this, &Session::updateSearch)));
    m_connections.emplace_back(
        state.isSearchActive.signalChanged().connect(sigc::mem_fun(*this, &Session::updateSearch)));
    m_connections.emplace_back(
        list.signalCreated().connect(sigc::mem_fun(*this, &Session::showCreated)));
}

void Session::bindEditor() {
    m_connections.emplace_back(
        state.selectedNoteID.signalChanged().connect(sigc::mem_fun(*this, &Session::openSelected)));
    const auto publish = [this] {
        state.selectedNote.set(editor.note());
        if (editor.note()) recentNotes.opened(editor.note()->id);
        if (!editor.note()) state.selectedNoteID.set(std::nullopt);
    };
    m_connections.emplace_back(editor.signalOpened().connect(publish));
    m_connections.emplace_back(editor.signalStateChanged().connect(publish));
    m_connections.emplace_back(
        editor.signalConflict().connect(sigc::mem_fun(*this, &Session::keepOtherVersion)));
    m_connections.emplace_back(editor.signalDerivedChanged().connect([this] {
        if (editor.isEdited()) list.showDraft(editor.note()->id, editor.title());
    }));
    m_connections.emplace_back(notifications.observe(
        "folderDidChange", [this](const std::any&) { editor.refreshFolders(); }));
}

// Each linked file is looked at when its note is opened; all of them when their list is shown, when
// there is nothing else to do.
void Session::scanLinkedFiles() {
    m_scanning.disconnect();
    if (state.sidebarFilter.get().kind != SidebarFilter::Kind::localFiles) return;
    m_scan = std::make_unique<LinkedFileScan>(library.notes);
    m_scanning = Glib::signal_idle().connect(
        [this] {
            try {
                return m_scan->work(kScanSlice, state.selectedNoteID.get());
            } catch (const StoreError& error) {
                logLine(std::string("Error loading notes: ") + error.what());
                return false;
            }
        },
        Glib::PRIORITY_LOW);
}

void Session::updateSearch() {
    list.setSearchQuery(state.isSearchActive.get() ? state.searchQuery.get() : std::string());
}

// What is open is what is selected: a note whose save the store refuses stays, its text is nowhere
// else; a note that is gone is not selected.
void Session::openSelected() {
    editor.open(state.selectedNoteID.get());
    state.selectedNoteID.set(editor.note() ? std::optional(editor.note()->id) : std::nullopt);
}

void Session::showCreated(const Uuid& id) {
    state.isSearchActive.set(false);
    if (!list.positionOf(id)) state.sidebarFilter.set({});
    state.selectedNoteID.set(id);
}

// The note keeps what is being written; what came from elsewhere is set beside it.
void Session::keepOtherVersion(const Note& theirs) {
    Note copy = theirs;
    copy.id = Uuid::random();
    copy.title = texts.format(texts::otherVersionTitle, {theirs.title});
    copy.sourceFilePath.reset();
    copy.bookmarkData.reset();
    try {
        library.notes.create(copy);
    } catch (const StoreError& error) {
        logLine(std::string("Error creating note: ") + error.what());
    }
    m_otherVersionKept.emit(copy);
}

void Session::reveal(const Uuid& id) {
    if (!list.positionOf(id)) {
        state.isSearchActive.set(false);
        if (!list.positionOf(id)) state.sidebarFilter.set({});
    }
    state.selectedNoteID.set(id);
}

void Session::start() {
    const auto recovered =
        DraftRecovery(library.notes, texts).run(library.controller.draftFolder());
    state.editorMode.set(preferences.defaultEditorMode());
    const auto& store = preferences.store();
    state.sortOption.set(sortOptionFrom(store.string(kSortOption).value_or("")));
    state.sidebarFilter.set(SidebarFilter::fromString(store.string(kLastFilter).value_or("")));
    forgetMissingFolder();
    list.open();
    sidebar.reload();
    const auto last = Uuid::parse(store.string(kLastNote).value_or(""));
    // The list must reach to the note that was open last.
    if (last && list.size() < list.noteCount() && !list.positionOf(*last)) list.reload();
    if (last && list.positionOf(*last)) {
        state.selectedNoteID.set(*last);
    } else if (const auto first = list.summaryAt(0)) {
        state.selectedNoteID.set(first->id);
    }
    if (recovered.empty()) return;
    reveal(recovered.back().id);
    m_recovered.emit(recovered);
}

void Session::forgetMissingFolder() {
    const auto& filter = state.sidebarFilter.get();
    if (filter.kind == SidebarFilter::Kind::folder &&
        !library.folders.fetchFolder(filter.folderID)) {
        state.sidebarFilter.set({});
    }
}

bool Session::finish() {
    rememberState();
    const bool isSaved = editor.save() && saveRest();
    linkedFile.flush();
    return isSaved;
}

// Changes other than of the text that the store refused earlier, such as a pin.
bool Session::saveRest() {
    auto& context = library.controller.viewContext();
    try {
        context.save();
    } catch (const StoreError& error) {
        logLine(std::string("Core Data save error: ") + error.what());
    }
    return !context.hasChanges();
}

void Session::rememberState() {
    auto& store = preferences.store();
    recentNotes.remember(store);
    store.setString(kSortOption, rawValue(state.sortOption.get()));
    store.setString(kLastFilter, state.sidebarFilter.get().toString());
    const auto& note = state.selectedNoteID.get();
    store.setString(kLastNote, note ? note->toString() : std::string());
}

}  // namespace corvel
