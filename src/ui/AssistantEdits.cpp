#include "ui/AssistantEdits.h"

#include "ai/AssistantTexts.h"
#include "app/Texts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "app/texts/DraftTexts.h"
#include "app/texts/ImageTexts.h"
#include "library/NoteText.h"
#include "platform/StoreError.h"
#include "platform/Text.h"
#include "ui/BufferOffsets.h"
#include "ui/NoteBuffers.h"
#include "ui/UndoStep.h"

#include <algorithm>

namespace corvel {

namespace {

void changeBuffer(Gtk::TextBuffer& buffer,
                  std::size_t begin,
                  std::size_t end,
                  const std::string& text) {
    const int first = bufferoffsets::characterAt(buffer, begin);
    const int last = bufferoffsets::characterAt(buffer, end);
    buffer.begin_user_action();
    if (last > first) {
        buffer.erase(buffer.get_iter_at_offset(first), buffer.get_iter_at_offset(last));
    }
    const int rest = buffer.get_char_count() - first;
    if (!text.empty()) insertAsUndoStep(buffer, buffer.get_iter_at_offset(first), text);
    buffer.place_cursor(buffer.get_iter_at_offset(buffer.get_char_count() - rest));
    buffer.end_user_action();
}

}  // namespace

AssistantEdits::AssistantEdits(Session& session, EditorPane& editor, Toasts& toasts)
    : m_session(session), m_editor(editor), m_toasts(toasts) {}

void AssistantEdits::insertAtCursor(const AIEdit& edit) {
    apply(edit, [&edit](Gtk::TextBuffer& buffer, const std::string& text) -> Change {
        // Behind what is selected, which stays. In a note where nobody was yet: at the end.
        auto begin = buffer.get_insert()->get_iter();
        auto end = begin;
        buffer.get_selection_bounds(begin, end);
        if (end.is_start() && !text.empty()) {
            const std::string gap = text.ends_with("\n\n") ? ""
                                    : text.ends_with('\n') ? "\n"
                                                           : "\n\n";
            return {text.size(), text.size(), gap + edit.text};
        }
        const std::size_t place = bufferoffsets::byteAt(buffer, end.get_offset());
        return {place, place, edit.text};
    });
}

void AssistantEdits::insertAtTop(const AIEdit& edit) {
    apply(edit, [&edit](Gtk::TextBuffer&, const std::string&) -> Change {
        const auto last = edit.text.find_last_not_of('\n');
        return {0, 0, edit.text.substr(0, last == std::string::npos ? 0 : last + 1) + "\n\n"};
    });
}

void AssistantEdits::replaceSelection(const AIEdit& edit) {
    apply(edit, [&edit](Gtk::TextBuffer&, const std::string&) -> Change {
        return {edit.offset, edit.offset + edit.length, edit.text};
    });
}

// What stays at both ends is left alone: the reader's place, and the marks in it.
void AssistantEdits::replaceDocument(const AIEdit& edit) {
    apply(edit, [&edit](Gtk::TextBuffer&, const std::string& old) -> Change {
        const std::string text = text::repaired(edit.text);
        const auto common = [](auto first, auto last, auto other, auto end) {
            return static_cast<std::size_t>(std::mismatch(first, last, other, end).first - first);
        };
        const std::size_t same = common(old.begin(), old.end(), text.begin(), text.end());
        const std::size_t begin = text::prefixByBytes(old, same).size();
        const auto most = static_cast<std::ptrdiff_t>(std::min(old.size(), text.size()) - begin);
        std::size_t tail =
            common(old.rbegin(), old.rbegin() + most, text.rbegin(), text.rbegin() + most);
        while (tail > 0 && (static_cast<unsigned char>(old[old.size() - tail]) & 0xC0U) == 0x80U)
            --tail;
        return {begin, old.size() - tail, text.substr(begin, text.size() - tail - begin)};
    });
}

void AssistantEdits::apply(const AIEdit& edit, const Plan& plan) {
    const auto& open = m_session.editor.note();
    const bool isOpen = open && (!edit.noteID || *edit.noteID == open->id);
    if (isOpen) return applyToOpen(plan);
    if (edit.noteID) applyToOther(*edit.noteID, plan);
}

void AssistantEdits::applyToOpen(const Plan& plan) {
    if (!m_editor.textView().get_editable()) {
        return say(m_session.texts(texts::noteIsReadOnly));
    }
    const auto buffer = m_editor.textView().get_buffer();
    const Change change = plan(*buffer.get(), m_editor.text());
    changeBuffer(*buffer.get(), change.begin, change.end, text::repaired(change.text));
    m_editor.textView().scroll_to(buffer->get_insert(), 0.1);
    m_editor.focusText();
}

void AssistantEdits::applyToOther(const Uuid& id, const Plan& plan) {
    const auto note = m_session.library.notes.fetchNote(id);
    if (!note) return say(m_session.texts(texts::assistantNoteIsGone));
    if (note->isTrashed || !EditorPane::canEdit(note->content)) {
        return say(m_session.texts(texts::noteIsReadOnly));
    }
    const std::string before = text::repaired(note->content);
    const auto buffer = m_editor.bufferOf(id, before);
    Change change = plan(*buffer.get(), before);
    change.text = text::repaired(change.text);
    // The store first: what it refuses must not stand in a buffer that nobody saves.
    if (!store(*note, before, change)) return;
    changeBuffer(*buffer.get(), change.begin, change.end, change.text);
    m_toasts.show(m_session.texts.format(texts::assistantNoteChanged, {note->title}),
                  m_session.texts(texts::showNote), [this, id] { m_session.reveal(id); });
}

bool AssistantEdits::store(Note note, const std::string& before, const Change& change) {
    const bool titleFollows = note.title.empty() || note.title == titleFromContent(before);
    note.content = before.substr(0, change.begin) + change.text + before.substr(change.end);
    if (titleFollows) note.title = titleFromContent(note.content);
    note.modifiedAt = Date::now();
    try {
        m_session.library.notes.update(note);
        return true;
    } catch (const StoreError& error) {
        say(m_session.texts.format(texts::assistantNoteNotSaved, {error.what()}));
        return false;
    }
}

}  // namespace corvel
