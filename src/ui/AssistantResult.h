#pragma once

#include "ai/AIAssistantViewModel.h"
#include "app/Session.h"
#include "ui/DifferenceView.h"
#include "ui/MessageView.h"

#include <gtkmm/expander.h>
#include <gtkmm/stack.h>

namespace corvel {

/// What an action gave: as it arrives, and, where it is to replace a text, what it changes in that
/// text; with what can be done with it.
class AssistantResult : public Gtk::Box {
public:
    /// Both must outlive the result.
    AssistantResult(Session& session, AIAssistantViewModel& assistant);

    void changed(AIAssistantViewModel::Property property);
    void relabel();
    /// The button that is most likely wanted now.
    void focusButton();
    DifferenceView& differences() { return m_differences; }
    Gtk::Button& applyButton() { return m_apply; }
    Gtk::Button& stopButton() { return m_stop; }

    sigc::signal<void()>& signalBack() { return m_back; }
    sigc::signal<void()>& signalCopied() { return m_copied; }

private:
    void build();
    void refresh();
    void showButtons();
    bool replaces() const;
    const Text* applyLabel() const;

    Session& m_session;
    AIAssistantViewModel& m_assistant;
    std::vector<AIMessage> m_message;  // the result as the one message of its page
    Gtk::Button m_backButton;
    Gtk::Label m_title;
    Gtk::Expander m_originalExpander;
    Gtk::Label m_original;
    Gtk::Stack m_stack;
    MessageView m_text;
    DifferenceView m_differences;
    Gtk::Button m_apply;
    Gtk::Button m_copy;
    Gtk::Button m_stop;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_back;
    sigc::signal<void()> m_copied;
};

}  // namespace corvel
