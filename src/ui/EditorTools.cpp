#include "ui/EditorTools.h"

#include "library/Notifications.h"

namespace corvel {

EditorTools::EditorTools(Session& session, EditorPane& editor)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_editing(editor.textView(), session.preferences)
    , m_spelling(editor.textView(),
                 session.preferences,
                 [this](int line) { return m_editing.stateAt(line); })
    , m_find(editor.textView(), m_bar, session.texts)
    , m_menu(*this, editor.textView(), m_spelling, session.texts) {
    append(editor);
    observeFormats();
}

void EditorTools::observeFormats() {
    using editing::Emphasis;
    const auto observe = [this](const char* name, std::function<void()> handler) {
        m_connections.push_back(m_session.notifications.observe(
            name, [handler = std::move(handler)](const std::any&) { handler(); }));
    };
    observe(notifications::formatBold, [this] { m_editing.toggleEmphasis(Emphasis::bold); });
    observe(notifications::formatItalic, [this] { m_editing.toggleEmphasis(Emphasis::italic); });
    observe(notifications::formatStrikethrough,
            [this] { m_editing.toggleEmphasis(Emphasis::strikethrough); });
    observe(notifications::formatLink, [this] { m_editing.toggleLink(); });
    observe(notifications::formatCodeBlock, [this] { m_editing.toggleCodeBlock(); });
    observe(notifications::formatHeading, [this] { m_editing.cycleHeading(); });
    observe(notifications::formatTaskList, [this] { m_editing.toggleTasks(); });
}

void EditorTools::find(CommandID command) {
    auto& mode = m_session.state.editorMode;
    if (mode.get() == EditorMode::preview) mode.set(EditorMode::split);
    switch (command) {
        case CommandID::find:
        case CommandID::replace:
            return m_find.open(command == CommandID::replace);
        case CommandID::findNext:
            return m_find.step(FindBar::Action::next);
        case CommandID::findPrevious:
            return m_find.step(FindBar::Action::previous);
        default:
            return;
    }
}

}  // namespace corvel
