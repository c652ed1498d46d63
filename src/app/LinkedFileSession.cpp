#include "app/LinkedFileSession.h"

#include "app/texts/LinkedFileTexts.h"
#include "library/LinkedText.h"
#include "library/NoteText.h"
#include "library/Notifications.h"
#include "platform/DistantVolumes.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvel {

namespace {

// How long somebody may take between emptying or removing a file and writing it anew.
constexpr std::chrono::milliseconds kDoubt{400};
constexpr std::chrono::seconds kRenewalDelay{1};
constexpr std::chrono::seconds kRetryDelay{5};
// While others keep writing, their events bring the next look.
constexpr int kMostLooks = 3;

void logError(const char* what, const std::exception& error) {
    logLine(std::string(what) + " " + text::repaired(error.what()));
}

bool isMissing(const LinkError& error) {
    return error.fault() == LinkFault::file && error.fileFault() == FileFault::missing;
}

// No event of the file tells that there is room again, or that its server is back.
bool mayPassByItself(const LinkError& error) {
    if (error.fault() != LinkFault::file) return false;
    const auto fault = error.fileFault();
    return fault == FileFault::noAnswer || fault == FileFault::diskFull ||
           fault == FileFault::readOnly || fault == FileFault::noPermission ||
           fault == FileFault::failed;
}

bool isSameFault(const std::optional<LinkError>& one, const std::optional<LinkError>& other) {
    if (!one || !other) return one.has_value() == other.has_value();
    return one->fault() == other->fault() && one->fileFault() == other->fileFault();
}

}  // namespace

LinkedFileSession::LinkedFileSession(EditorViewModel& editor,
                                     NoteListViewModel& list,
                                     NoteRepository& notes,
                                     NotificationCenter& notifications,
                                     const Localisation& texts)
    : m_editor(editor)
    , m_list(list)
    , m_notes(notes)
    , m_notifications(notifications)
    , m_texts(texts) {
    m_connections.emplace_back(editor.signalOpened().connect([this] { follow(); }));
    m_connections.emplace_back(editor.signalStateChanged().connect([this] { follow(); }));
    m_connections.emplace_back(editor.signalSaved().connect([this] { settle(Certainty::final); }));
    m_connections.emplace_back(m_monitor.signalChanged().connect(
        [this] { m_notifications.post(notifications::reloadCurrentNoteFromDisk); }));
    m_connections.push_back(
        notifications.observe(notifications::reloadCurrentNoteFromDisk,
                              [this](const std::any&) { settle(Certainty::event); }));
}

LinkedFileSession::~LinkedFileSession() = default;

void LinkedFileSession::flush() {
    if (m_renewal.connected()) renewBookmark();
}

// The open note is another one, or has another file, or none any more.
void LinkedFileSession::follow() {
    const auto& note = m_editor.note();
    const bool isLinked = note && note->sourceFilePath && note->bookmarkData && !note->isTrashed;
    const bool isKnown = isLinked && m_noteID == note->id && m_state.path == *note->sourceFilePath;
    if (isKnown) return settle(Certainty::event);
    leave();
    if (isLinked) begin();
    m_stateChanged.emit();
}

void LinkedFileSession::begin() {
    const auto& note = *m_editor.note();
    m_noteID = note.id;
    m_bookmark = Bookmark::decode(*note.bookmarkData).value_or(Bookmark{});
    m_bookmark.path = *note.sourceFilePath;
    m_state = {LinkState::Kind::inStep, m_bookmark.path, {}};
    settle(Certainty::final);
}

void LinkedFileSession::leave() {
    // A note that is still open has got another link, or none.
    const bool isOpen = m_editor.note() && m_noteID == m_editor.note()->id;
    if (m_renewal.connected() && !isOpen) renewBookmark();
    m_renewal.disconnect();
    m_retry.disconnect();
    m_monitor.stop();
    m_searching.disconnect();
    m_doubt.disconnect();
    m_search.reset();
    m_noteID.reset();
    m_base.reset();
    m_theirs.reset();
    const auto left = std::exchange(m_state, {});
    if (left.kind == LinkState::Kind::unwritable) m_leftUnwritten.emit(left);
}

void LinkedFileSession::settle(Certainty certainty) {
    if (!m_noteID || m_isSettling || !m_editor.note()) return;
    m_isSettling = true;
    for (int round = 0; round < kMostLooks; ++round) {
        m_looksAgain = false;
        settleNow(certainty);
        if (!m_looksAgain) break;
    }
    m_isSettling = false;
}

void LinkedFileSession::settleNow(Certainty certainty) {
    const auto& path = m_state.path;
    if (!distantVolumes::answersFor(path))
        return setState(LinkState::Kind::unreadable, LinkError(path, FileError::noAnswer(path)));
    if (!m_monitor.isWatching()) m_monitor.watch(path);
    try {
        const auto stamp = stampOf(m_state.path);
        if (stamp && isAsKnown(*stamp)) {
            compare(*m_base, certainty);
        } else {
            compare(m_bookmarks.read(m_state.path), certainty);
        }
    } catch (const LinkError& error) {
        if (isMissing(error)) return handleMissing(certainty);
        setState(LinkState::Kind::unreadable, error);
    }
}

bool LinkedFileSession::isAsKnown(const FileStamp& stamp) const {
    return m_base && m_base->file.stamp == stamp && stamp.isSettled(Date::now());
}

void LinkedFileSession::compare(LinkedFile file, Certainty certainty) {
    const std::string mine = m_editor.current()->content;
    if (file.text == mine) return reached(std::move(file));
    const bool fileChanged = isFileChanged(file);
    if (fileChanged && file.text.empty() && waits(certainty)) return;
    if (!isNoteChanged(mine)) return reload(std::move(file));
    if (fileChanged) {
        m_theirs = std::move(file);
        return setState(LinkState::Kind::conflict);
    }
    // What is not saved yet comes back here when it is.
    m_theirs.reset();
    if (!m_editor.isEdited()) return writeBack(file);
    if (m_state.kind != LinkState::Kind::unwritable) setState(LinkState::Kind::inStep);
}

bool LinkedFileSession::isFileChanged(const LinkedFile& file) const {
    if (m_base) return file.file.bytes != m_base->file.bytes;
    return hashOf(file.file.bytes) != m_bookmark.fileHash;
}

bool LinkedFileSession::isNoteChanged(const std::string& mine) const {
    return m_base ? mine != m_base->text : hashOf(mine) != m_bookmark.noteHash;
}

// True when it is too early to say.
bool LinkedFileSession::waits(Certainty certainty) {
    if (certainty == Certainty::final) return false;
    if (m_doubt.connected()) return true;
    m_doubt = Glib::signal_timeout().connect(
        [this] {
            m_doubt.disconnect();
            settle(Certainty::final);
            return false;
        },
        static_cast<unsigned>(kDoubt.count()));
    return true;
}

// File and note hold the same.
void LinkedFileSession::reached(LinkedFile file) {
    const bool isRecorded = m_bookmark.stamp == file.file.stamp;
    m_base = std::move(file);
    m_theirs.reset();
    setState(LinkState::Kind::inStep);
    if (!isRecorded) scheduleRenewal();
}

void LinkedFileSession::reload(LinkedFile file) {
    // Edits that came to nothing, and a title.
    if (!m_editor.save()) return;
    Note note = *m_editor.note();
    if (note.title == titleFromContent(note.content)) note.title = titleFromContent(file.text);
    note.content = file.text;
    note.modifiedAt = std::min(file.file.modifiedAt, Date::now());
    m_bookmark = m_bookmarks.make(m_state.path, file.file.stamp, file.file.bytes, file.text);
    note.bookmarkData = m_bookmark.encoded();
    m_renewal.disconnect();
    const auto before = std::exchange(m_base, std::move(file));
    try {
        m_notes.update(note);
    } catch (const StoreError& error) {
        m_base = before;
        return logError("Error saving note:", error);
    }
    m_theirs.reset();
    setState(LinkState::Kind::inStep);
}

void LinkedFileSession::writeBack(const LinkedFile& file) {
    const std::string mine = m_editor.note()->content;
    std::string bytes = linkedText::encoded(mine, file.file.bytes);
    try {
        const auto stamp = writeWholeFile(m_state.path, bytes, file.file.stamp);
        reached({{std::move(bytes), stamp, Date::now()}, mine});
    } catch (const FileError& error) {
        m_looksAgain = error.fault() == FileFault::changed || error.fault() == FileFault::missing;
        if (m_looksAgain) return;  // somebody else was faster
        if (m_state.kind != LinkState::Kind::unwritable)
            logError("Error writing local file:", error);
        setState(LinkState::Kind::unwritable, LinkError(m_state.path, error));
    }
}

void LinkedFileSession::handleMissing(Certainty certainty) {
    if (m_state.kind == LinkState::Kind::vanished || m_searching.connected()) return;
    if (waits(certainty)) return;
    if (m_base) m_bookmark.stamp = m_base->file.stamp;
    const auto found = m_bookmarks.resolve(m_bookmark);
    if (found.state != BookmarkManager::State::missing) return moved(found.path);
    m_search = std::make_unique<MovedFileSearch>(m_bookmark.path, m_bookmark.stamp);
    m_searching = Glib::signal_idle().connect([this] {
        if (m_search->step()) return true;
        m_searching.disconnect();
        search();
        return false;
    });
}

// The search is over.
void LinkedFileSession::search() {
    const auto found = std::exchange(m_search, nullptr)->found();
    const bool isKnown = distantVolumes::answersFor(m_state.path);
    if (!isKnown || stampOf(m_state.path))
        return settle(Certainty::final);  // it came back meanwhile
    if (found) return moved(*found);
    logLine("[EditorViewModel] Local file was deleted/moved: " +
            text::repaired(m_state.path.string()));
    setState(LinkState::Kind::vanished);
}

void LinkedFileSession::moved(const std::filesystem::path& path) {
    m_bookmark.path = path;
    m_state.path = path;
    m_monitor.stop();  // the next look watches it where it is now
    try {
        // The editor hears of it as of every change of the note's state.
        m_notes.renewLink(*m_noteID, path.string(), m_bookmark.encoded());
    } catch (const StoreError& error) {
        logError("Error saving note:", error);
    }
    m_stateChanged.emit();
    m_looksAgain = true;
    settle(Certainty::final);  // unless that is what goes on
}

void LinkedFileSession::setState(LinkState::Kind kind, std::optional<LinkError> error) {
    const bool isSame = m_state.kind == kind && isSameFault(m_state.error, error);
    m_state.kind = kind;
    m_state.error = std::move(error);
    m_retry.disconnect();
    if (m_state.error && mayPassByItself(*m_state.error)) tryAgainLater();
    // Another version of the file makes it another conflict.
    if (!isSame || kind == LinkState::Kind::conflict) m_stateChanged.emit();
}

void LinkedFileSession::tryAgainLater() {
    m_retry = Glib::signal_timeout().connect_seconds(
        [this] {
            m_retry.disconnect();
            settle(Certainty::final);
            return false;
        },
        static_cast<unsigned>(kRetryDelay.count()));
}

// Of many saves the last one's bookmark is enough: without it the texts themselves tell that they
// are the same.
void LinkedFileSession::scheduleRenewal() {
    if (m_renewal.connected()) return;
    m_renewal = Glib::signal_timeout().connect_seconds(
        [this] {
            renewBookmark();
            return false;
        },
        static_cast<unsigned>(kRenewalDelay.count()));
}

void LinkedFileSession::renewBookmark() {
    m_renewal.disconnect();
    if (!m_base) return;
    m_bookmark =
        m_bookmarks.make(m_state.path, m_base->file.stamp, m_base->file.bytes, m_base->text);
    const auto data = m_bookmark.encoded();
    try {
        m_notes.renewLink(*m_noteID, m_state.path.string(), data);
    } catch (const StoreError& error) {
        logError("Error saving note:", error);
    }
    if (m_editor.note() && m_editor.note()->id == *m_noteID)
        m_editor.setLink(m_state.path.string(), data);
}

std::optional<LinkedFileSession::Versions> LinkedFileSession::versions() const {
    if (m_state.kind != LinkState::Kind::conflict || !m_theirs) return std::nullopt;
    return Versions{m_editor.current()->content, m_theirs->text};
}

// Both sides are in the store and known as they are now; false when that is not what was seen.
bool LinkedFileSession::isStill(const Versions& seen) {
    const auto isSame = [&] {
        return m_state.kind == LinkState::Kind::conflict && m_theirs &&
               m_theirs->text == seen.theirs;
    };
    if (!isSame() || !m_editor.save()) return false;
    settle(Certainty::final);
    return isSame();
}

// The other version becomes what the note is compared with: then the note alone was changed.
bool LinkedFileSession::keepMine(const Versions& seen) {
    if (!isStill(seen)) return false;
    m_base = std::exchange(m_theirs, std::nullopt);
    settle(Certainty::final);
    return true;
}

bool LinkedFileSession::takeTheirs(const Versions& seen) {
    if (!isStill(seen)) return false;
    m_isSettling = true;
    reload(*std::exchange(m_theirs, std::nullopt));
    m_isSettling = false;
    settle(Certainty::final);
    return true;
}

bool LinkedFileSession::keepBoth(const Versions& seen) {
    if (!isStill(seen)) return false;
    Note copy = *m_editor.note();
    copy.id = Uuid::random();
    copy.title = m_texts.format(texts::ownVersionTitle, {copy.title});
    copy.sourceFilePath.reset();
    copy.bookmarkData.reset();
    try {
        m_notes.createOrRefuse(copy);
    } catch (const StoreError& error) {
        logError("Error creating note:", error);
        return false;
    }
    return takeTheirs(seen);
}

LinkOutcome LinkedFileSession::locate(const std::filesystem::path& path) {
    if (!m_noteID || !m_editor.save()) return {};
    return m_list.relinkLocalFile(*m_noteID, path);
}

LinkOutcome LinkedFileSession::writeAgain() {
    if (!m_noteID || !m_editor.save()) return {};
    const auto id = *m_noteID;
    if (!distantVolumes::answersFor(m_state.path))
        return {{}, LinkError(m_state.path, FileError::noAnswer(m_state.path))};
    if (stampOf(m_state.path)) {
        settle(Certainty::final);
        return {id, {}};
    }
    const std::string mine = m_editor.note()->content;
    std::string bytes = linkedText::encoded(mine, m_base ? m_base->file.bytes : std::string());
    try {
        const auto stamp = writeWholeFile(m_state.path, bytes);
        reached({{std::move(bytes), stamp, Date::now()}, mine});
        return {id, {}};
    } catch (const FileError& error) {
        logError("Error writing local file:", error);
        return {{}, LinkError(m_state.path, error)};
    }
}

void LinkedFileSession::keepAsOrdinary() {
    if (m_noteID && m_editor.save()) m_list.stopTracking({*m_noteID});
}

}  // namespace corvel
