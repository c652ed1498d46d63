#include "app/EditorViewModel.h"

#include "library/NoteText.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kPause{200};
// With what the timer may be late, no key waits longer than a second.
constexpr std::chrono::milliseconds kDraftInterval{700};
// What a pause does costs time in proportion to the text: a long one waits longer for it, so that
// fewer keys meet it.
constexpr std::size_t kBytesPerMillisecond = 2000;
constexpr std::chrono::milliseconds kLongestPause{1500};
constexpr int kWordsPerMinute = 200;

bool isBlank(const std::string& content) {
    return content.find_first_not_of(" \t\r\n") == std::string::npos;
}

// A note without any text has no title of its own yet.
std::string titleOf(const std::string& content) {
    return isBlank(content) ? std::string() : titleFromContent(content);
}

std::chrono::milliseconds pauseFor(std::size_t size) {
    return std::min(kPause + std::chrono::milliseconds(size / kBytesPerMillisecond), kLongestPause);
}

bool isUntouched(const Note& note) {
    return note.title.empty() && isBlank(note.content) && note.createdAt == note.modifiedAt &&
           !note.isTrashed && !note.sourceFilePath;
}

}  // namespace

EditorViewModel::EditorViewModel(NoteRepository& notes,
                                 const Preferences& preferences,
                                 std::filesystem::path draftFolder)
    : m_notes(notes), m_preferences(preferences), m_draft(std::move(draftFolder)) {
    m_changes =
        notes.signalChanged().connect(sigc::mem_fun(*this, &EditorViewModel::noteChangedElsewhere));
}

EditorViewModel::~EditorViewModel() = default;

bool EditorViewModel::open(const std::optional<Uuid>& id) {
    const bool isOpen = id ? m_note && m_note->id == *id : !m_note;
    if (isOpen) return true;
    if (!save()) return false;
    const auto left = std::exchange(m_note, std::nullopt);
    if (left && isUntouched(*left)) removeUntouched(left->id);
    try {
        if (id) m_note = m_notes.fetchNote(*id);
    } catch (const StoreError& error) {
        logLine(std::string("Error loading notes: ") + error.what());
    }
    startSession();
    return true;
}

void EditorViewModel::removeUntouched(const Uuid& id) {
    try {
        m_notes.deletePermanently(id);
    } catch (const StoreError& error) {
        logLine(std::string("Error deleting note: ") + error.what());
    }
}

void EditorViewModel::startSession() {
    m_pauseTimer.disconnect();
    m_saveTimer.disconnect();
    m_draftTimer.disconnect();
    m_draft.discard();
    m_contentEdited = false;
    m_titleEdited = false;
    m_titleFollows = m_note && (m_note->title.empty() || m_note->title == titleOf(m_note->content));
    m_wordCount = m_note ? m_note->wordCount : 0;
    m_saveState = {};
    m_scroll.open(m_note ? std::optional(m_note->id) : std::nullopt);
    m_opened.emit();
    m_saveStateChanged.emit();
    if (m_note) m_render.emit(m_note->content);
}

void EditorViewModel::contentEdited(const TextEdit& edit) {
    if (!m_note) return;
    m_draft.add(edit);
    textEdited();
}

void EditorViewModel::contentEdited() {
    if (!m_note) return;
    m_draft.addWholeText();
    textEdited();
}

void EditorViewModel::textEdited() {
    m_contentEdited = true;
    m_pauseTimer = Glib::signal_timeout().connect(
        [this] {
            pauseReached();
            return false;
        },
        static_cast<unsigned>(pauseFor(m_note->content.size()).count()));
    edited();
}

void EditorViewModel::titleEdited(const std::string& title) {
    if (!m_note || title == m_note->title) return;
    m_note->title = title;
    m_titleEdited = true;
    m_titleFollows = title.empty();
    m_draft.addTitle(title);
    edited();
}

// The first edit after a save starts the clock: steady typing is saved too.
void EditorViewModel::edited() {
    if (m_saveState.kind == SaveState::Kind::saved) {
        m_saveState.kind = SaveState::Kind::edited;
        m_saveStateChanged.emit();
    }
    if (!m_saveTimer.connected()) scheduleSave();
    if (m_draftTimer.connected()) return;
    m_draftTimer = Glib::signal_timeout().connect(
        [this] {
            keepDraft();
            return false;
        },
        static_cast<unsigned>(kDraftInterval.count()));
}

void EditorViewModel::keepDraft() {
    if (m_note) m_draft.flush(m_note->id, m_note->content, [this] { return currentText(); });
}

void EditorViewModel::scheduleSave() {
    m_saveTimer = Glib::signal_timeout().connect(
        [this] {
            save();
            return false;
        },
        static_cast<unsigned>(m_preferences.autoSaveInterval() * 1000));
}

void EditorViewModel::pauseReached() {
    if (!m_note) return;
    const std::string text = currentText();
    deriveFrom(text);
    m_render.emit(text);
}

void EditorViewModel::deriveFrom(const std::string& content) {
    const auto words = text::wordCount(content);
    const auto title = m_titleFollows ? titleOf(content) : m_note->title;
    if (words == m_wordCount && title == m_note->title) return;
    m_wordCount = words;
    m_note->title = title;
    m_derivedChanged.emit();
}

std::string EditorViewModel::currentText() const {
    return m_source ? m_source() : m_note->content;
}

std::optional<Note> EditorViewModel::current() const {
    auto note = m_note;
    if (note && m_contentEdited) note->content = currentText();
    return note;
}

std::string EditorViewModel::title() const {
    return m_note ? m_note->title : std::string();
}

int EditorViewModel::readingMinutes() const {
    return std::max(1, (m_wordCount + kWordsPerMinute - 1) / kWordsPerMinute);
}

bool EditorViewModel::save() {
    m_saveTimer.disconnect();
    if (!m_note || !isEdited()) return true;
    const std::string text = m_contentEdited ? currentText() : m_note->content;
    // After a refused save even an equal text is not in the store: it waits in an open transaction.
    const bool isChanged =
        m_titleEdited || m_saveState.kind == SaveState::Kind::failed || text != m_note->content;
    if (!isChanged) {
        markSaved(m_saveState.savedAt);
        return true;
    }
    deriveFrom(text);
    Note note = *m_note;
    note.content = text;
    note.modifiedAt = Date::now();
    return write(std::move(note));
}

bool EditorViewModel::write(Note note) {
    m_isSaving = true;
    try {
        m_notes.update(note);
    } catch (const StoreError& error) {
        m_isSaving = false;
        logLine(std::string("Error saving note: ") + error.what());
        keepDraft();
        m_saveState = {SaveState::Kind::failed, m_saveState.savedAt, error.what(), error.fault()};
        m_saveStateChanged.emit();
        scheduleSave();
        return false;
    }
    m_isSaving = false;
    note.wordCount = m_wordCount;
    m_note = std::move(note);
    markSaved(m_note->modifiedAt);
    m_saved.emit();
    return true;
}

void EditorViewModel::markSaved(std::optional<Date> savedAt) {
    m_draftTimer.disconnect();
    m_draft.discard();
    m_contentEdited = false;
    m_titleEdited = false;
    m_saveState = {SaveState::Kind::saved, savedAt, {}, {}};
    m_saveStateChanged.emit();
}

void EditorViewModel::setLink(const std::string& path,
                              const std::vector<std::uint8_t>& bookmarkData) {
    if (!m_note) return;
    m_note->sourceFilePath = path;
    m_note->bookmarkData = bookmarkData;
}

void EditorViewModel::refreshFolders() {
    if (!m_note) return;
    const auto stored = m_notes.fetchNote(m_note->id);
    if (!stored || stored->folderIDs == m_note->folderIDs) return;
    m_note->folderIDs = stored->folderIDs;
    m_stateChanged.emit();
}

// Pin, archive and trash are changed by others while the note is open; a later save must not undo
// them.
void EditorViewModel::noteChangedElsewhere(const NoteChange& change) {
    if (m_isSaving || !m_note || change.id != m_note->id) return;
    const auto stored =
        change.kind == NoteChange::Kind::deleted ? std::nullopt : m_notes.fetchNote(change.id);
    if (!stored || (change.kind == NoteChange::Kind::updated && !isEdited())) {
        m_note = stored;
        startSession();
        return;
    }
    takeOverState(*stored);
    if (stored->content == m_note->content) return;
    const bool isOtherText = stored->content != currentText();
    m_note->content = stored->content;
    m_draft.discard();
    m_draft.addWholeText();
    keepDraft();
    if (isOtherText) m_conflict.emit(*stored);
}

void EditorViewModel::takeOverState(const Note& stored) {
    m_note->isPinned = stored.isPinned;
    m_note->isArchived = stored.isArchived;
    m_note->isTrashed = stored.isTrashed;
    m_note->trashedAt = stored.trashedAt;
    m_note->folderIDs = stored.folderIDs;
    m_note->sourceFilePath = stored.sourceFilePath;
    m_note->bookmarkData = stored.bookmarkData;
    m_stateChanged.emit();
}

}  // namespace corvel
