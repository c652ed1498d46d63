#pragma once

#include "ai/AITarget.h"
#include "app/Session.h"
#include "ui/EditorPane.h"
#include "ui/Toasts.h"

#include <gtkmm/textbuffer.h>

#include <optional>
#include <string>

namespace corvel {

/// Writes replies into notes, each as one undo step. The note that is open is changed in the
/// editor; another one in the store, and in its buffer too, so that the step can be undone there
/// when it is opened.
class AssistantEdits {
public:
    /// All must outlive this.
    AssistantEdits(Session& session, EditorPane& editor, Toasts& toasts);

    void insertAtCursor(const AIEdit& edit);
    void insertAtTop(const AIEdit& edit);
    void replaceSelection(const AIEdit& edit);
    void replaceDocument(const AIEdit& edit);

private:
    using Buffer = Glib::RefPtr<Gtk::TextBuffer>;
    /// Bytes of the note's text, and what comes in their place.
    struct Change {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::string text;
    };
    /// Makes the change of a note's buffer and text.
    using Plan = std::function<Change(Gtk::TextBuffer& buffer, const std::string& text)>;

    void apply(const AIEdit& edit, const Plan& plan);
    void applyToOpen(const Plan& plan);
    void applyToOther(const Uuid& id, const Plan& plan);
    bool store(Note note, const std::string& before, const Change& change);
    void say(const std::string& text) { m_toasts.show(text); }

    Session& m_session;
    EditorPane& m_editor;
    Toasts& m_toasts;
};

}  // namespace corvel
