#pragma once

#include "ai/AIAssistantViewModel.h"
#include "app/Session.h"
#include "ui/AssistantEdits.h"
#include "ui/AssistantPanel.h"

#include <gtkmm/window.h>

#include <vector>

namespace corvel {

/// The assistant of one window: its session, which goes on while the panel is closed, the panel,
/// and what ties them to the editor.
class AssistantHost {
public:
    /// All must outlive the host.
    AssistantHost(Session& session, EditorPane& editor, Toasts& toasts, Gtk::Window& window);
    AssistantHost(const AssistantHost&) = delete;
    AssistantHost& operator=(const AssistantHost&) = delete;

    AIAssistantViewModel& assistant() { return m_assistant; }
    AssistantPanel& panel() { return m_panel; }

private:
    void connectEdits();
    void confirm(const std::string& title, std::function<void(bool)> answer);
    void followEditor();
    void followBuffer();
    void readNote();
    void readSelection();

    Session& m_session;
    EditorPane& m_editor;
    Toasts& m_toasts;
    Gtk::Window& m_window;
    AssistantEdits m_edits;
    AIAssistantViewModel m_assistant;
    AssistantPanel& m_panel;
    ScopedConnection m_selection;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
