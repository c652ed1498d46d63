#include "ui/AssistantHost.h"

#include "app/Texts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "platform/StoreError.h"
#include "platform/Text.h"
#include "ui/BufferOffsets.h"
#include "ui/Dialogs.h"
#include "ui/LongLines.h"

namespace corvel {

AssistantHost::AssistantHost(Session& session,
                             EditorPane& editor,
                             Toasts& toasts,
                             Gtk::Window& window)
    : m_session(session)
    , m_editor(editor)
    , m_toasts(toasts)
    , m_window(window)
    , m_edits(session, editor, toasts)
    , m_assistant(session.ai.factory, session.preferences, session.texts)
    , m_panel(*Gtk::make_managed<AssistantPanel>(session, m_assistant)) {
    connectEdits();
    followEditor();
    m_panel.signalCopied().connect(
        [this] { m_toasts.show(m_session.texts(texts::assistantCopied)); });
    readNote();
}

void AssistantHost::connectEdits() {
    m_assistant.onInsertAtCursor = [this](const AIEdit& edit) { m_edits.insertAtCursor(edit); };
    m_assistant.onInsertAtTop = [this](const AIEdit& edit) { m_edits.insertAtTop(edit); };
    m_assistant.onReplaceSelection = [this](const AIEdit& edit) { m_edits.replaceSelection(edit); };
    m_assistant.onReplaceDocument = [this](const AIEdit& edit) { m_edits.replaceDocument(edit); };
    m_assistant.onClose = [this] { m_session.state.isAIAssistantVisible.set(false); };
    m_assistant.onContextNeeded = [this] { readNote(); };
    m_assistant.onConfirmReplace = [this](const std::string& title, auto answer) {
        confirm(title, std::move(answer));
    };
    m_assistant.contentOf = [this](const Uuid& id) -> std::optional<std::string> {
        try {
            auto note = m_session.library.notes.fetchNote(id);
            if (note) return text::repaired(note->content);
        } catch (const StoreError&) {
        }
        return std::nullopt;
    };
}

void AssistantHost::confirm(const std::string& title, std::function<void(bool)> answer) {
    const auto& say = m_session.texts;
    ask(m_window,
        {say.format(texts::assistantConfirm, {title.empty() ? say(texts::untitled) : title}),
         say(texts::assistantConfirmDetail),
         {{"cancel", say(texts::cancel)},
          {"replace", say(texts::assistantConfirmReplace), DialogAnswer::Look::destructive}}},
        [answer = std::move(answer)](const std::string& id) { answer(id == "replace"); });
}

void AssistantHost::followEditor() {
    m_connections.emplace_back(
        m_editor.textView().property_buffer().signal_changed().connect([this] { followBuffer(); }));
    m_connections.emplace_back(m_session.editor.signalOpened().connect([this] { readNote(); }));
    followBuffer();
}

void AssistantHost::followBuffer() {
    m_selection =
        m_editor.textView().get_buffer()->property_has_selection().signal_changed().connect(
            [this] { readSelection(); });
}

// Not at each key: the assistant asks for it before it is used.
void AssistantHost::readNote() {
    const auto& note = m_session.editor.note();
    if (note) {
        m_assistant.setNote(note->id, m_session.editor.title(), m_editor.text());
    } else {
        m_assistant.setNote(std::nullopt, {}, {});
    }
    readSelection();
}

void AssistantHost::readSelection() {
    const auto buffer = m_editor.textView().get_buffer();
    Gtk::TextBuffer::iterator begin;
    Gtk::TextBuffer::iterator end;
    if (!buffer->get_selection_bounds(begin, end)) return m_assistant.setSelection({}, 0);
    m_assistant.setSelection(longlines::textOf(buffer->gobj(), *begin.gobj(), *end.gobj()),
                             bufferoffsets::byteAt(*buffer.get(), begin.get_offset()));
}

}  // namespace corvel
