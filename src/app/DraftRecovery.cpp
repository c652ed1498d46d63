#include "app/DraftRecovery.h"

#include "app/texts/DraftTexts.h"
#include "library/NoteText.h"
#include "platform/Log.h"
#include "platform/StoreError.h"
#include "platform/Text.h"

#include <utility>

namespace corvel {

namespace {

std::string titleOf(const Draft& draft, const Note& note) {
    if (draft.title && !draft.title->empty()) return *draft.title;
    const bool followsText =
        draft.title || note.title.empty() || note.title == titleFromContent(note.content);
    return followsText ? titleFromContent(draft.text) : note.title;
}

void setAside(const std::filesystem::path& path) {
    std::error_code ignored;
    auto damaged = path;
    std::filesystem::rename(path, damaged += ".damaged", ignored);
}

}  // namespace

DraftRecovery::DraftRecovery(NoteRepository& notes, const Localisation& texts)
    : m_notes(notes), m_texts(texts) {}

std::vector<RecoveredNote> DraftRecovery::run(const std::filesystem::path& folder) {
    m_recovered.clear();
    if (folder.empty()) return {};
    for (const auto& path : draftsIn(folder)) {
        try {
            recover(path);
        } catch (const StoreError& error) {
            logLine(std::string("Error recovering draft: ") + error.what());
        }
    }
    return std::move(m_recovered);
}

void DraftRecovery::recover(const std::filesystem::path& path) {
    const auto draft = readDraft(path);
    if (!draft) {
        logLine("Error reading draft: nothing intact in " + path.string());
        return setAside(path);
    }
    fold(*draft);
    if (draft->isDamaged) {
        logLine("Error reading draft: the end is damaged in " + path.string());
        return setAside(path);
    }
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

void DraftRecovery::fold(const Draft& draft) {
    auto stored = m_notes.fetchNote(draft.noteID);
    if (stored) {
        const std::string text = text::repaired(stored->content);
        const bool hasTitle = !draft.title || *draft.title == stored->title;
        if (text == draft.text && hasTitle) return;  // the save was made, its word came too late
        if (text == draft.base || text == draft.text) return update(*std::move(stored), draft);
    }
    if (draft.text != draft.base) createFrom(draft, stored);
}

void DraftRecovery::update(Note note, const Draft& draft) {
    note.title = titleOf(draft, note);
    note.content = draft.text;
    note.modifiedAt = Date::now();
    m_notes.update(note);
    m_recovered.push_back({note.id, note.title, false});
}

void DraftRecovery::createFrom(const Draft& draft, const std::optional<Note>& stored) {
    Note note;
    note.id = Uuid::random();
    const std::string title =
        draft.title && !draft.title->empty() ? *draft.title : titleFromContent(draft.text);
    note.title = m_texts.format(texts::recoveredTitle, {title});
    note.content = draft.text;
    note.createdAt = note.modifiedAt = Date::now();
    if (stored) note.folderIDs = stored->folderIDs;
    m_notes.createOrRefuse(note);
    m_recovered.push_back({note.id, note.title, true});
}

}  // namespace corvel
