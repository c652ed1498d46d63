#include "ui/StatusLine.h"

#include "app/Texts.h"
#include "app/texts/StoreTexts.h"
#include "ui/Accessible.h"

#include <glibmm/datetime.h>

namespace corvel {

namespace {

// What the user can do something about is said in the user's language.
std::string reasonOf(const SaveState& state, const Localisation& texts) {
    switch (state.fault) {
        case StoreFault::diskFull:
            return texts(texts::storeDiskFull);
        case StoreFault::readOnly:
            return texts(texts::storeReadOnly);
        case StoreFault::locked:
            return texts(texts::storeLocked);
        default:
            return state.reason;
    }
}

}  // namespace

StatusLine::StatusLine(Session& session) : m_session(session), m_folders(session) {
    add_css_class("note-status");
    set_spacing(12);
    m_notice.set_ellipsize(Pango::EllipsizeMode::END);
    m_save.set_ellipsize(Pango::EllipsizeMode::END);
    m_save.set_hexpand(true);
    m_save.set_xalign(1);
    append(m_words);
    append(m_reading);
    append(m_folders);
    append(m_notice);
    append(m_save);
}

void StatusLine::refresh(const std::string& notice) {
    m_notice.set_text(notice);
    setTooltip(m_notice, notice);
    m_notice.set_visible(!notice.empty());
    refreshCounts();
    refreshFolders();
    refreshSaveState();
}

void StatusLine::refreshCounts() {
    m_words.set_text(m_session.texts.words(m_session.editor.wordCount()));
    m_reading.set_text(m_session.texts.format(texts::readingTime,
                                              {std::to_string(m_session.editor.readingMinutes())}));
}

std::string StatusLine::saveText() const {
    const SaveState& state = m_session.editor.saveState();
    switch (state.kind) {
        case SaveState::Kind::edited:
            return m_session.texts(texts::saving);
        case SaveState::Kind::failed:
            return m_session.texts.format(texts::notSavedBecause,
                                          {reasonOf(state, m_session.texts)});
        case SaveState::Kind::saved:
            break;
    }
    if (!state.savedAt) return m_session.texts(texts::saved);
    const auto moment = Glib::DateTime::create_now_local(state.savedAt->seconds());
    return m_session.texts.format(texts::savedAt, {moment.format("%H:%M")});
}

void StatusLine::refreshSaveState() {
    const std::string text = saveText();
    m_save.set_text(text);
    setTooltip(m_save, text);
    if (m_session.editor.saveState().kind == SaveState::Kind::failed) {
        m_save.add_css_class("save-failed");
    } else {
        m_save.remove_css_class("save-failed");
    }
}

}  // namespace corvel
