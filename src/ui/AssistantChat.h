#pragma once

#include "ai/AIAssistantViewModel.h"
#include "app/Session.h"
#include "ui/Adw.h"
#include "ui/AssistantInput.h"
#include "ui/MessageView.h"

#include <gtkmm/image.h>
#include <gtkmm/stack.h>

namespace corvel {

/// The conversation, and where the next message is written.
class AssistantChat : public Gtk::Box {
public:
    /// Both must outlive the chat.
    AssistantChat(Session& session, AIAssistantViewModel& assistant);

    void changed(AIAssistantViewModel::Property property);
    void focusInput() { m_input.focusText(); }
    AssistantInput& input() { return m_input; }
    MessageView& messages() { return m_messages; }
    void relabel();

    /// A reply was copied.
    sigc::signal<void()>& signalCopied() { return m_copied; }

private:
    void act(MessageFeed::Verb verb, const AIMessage& message);
    void showMessages();
    void showContext();
    void showReplaceable();

    Session& m_session;
    AIAssistantViewModel& m_assistant;
    Gtk::Box m_context;
    Gtk::Image m_contextIcon;
    Gtk::Label m_contextText;
    Gtk::Button m_clear;
    Gtk::Stack m_stack;
    adw::StatusPage m_empty;
    MessageView m_messages;
    AssistantInput m_input;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_copied;
};

}  // namespace corvel
