#pragma once

#include "ui/Adw.h"
#include "ui/AssistantActions.h"
#include "ui/AssistantChat.h"
#include "ui/AssistantModelPicker.h"

#include <gtkmm/revealer.h>
#include <gtkmm/togglebutton.h>

namespace corvel {

/// The fourth pane of the window: chat and actions, what went wrong, and who answers.
class AssistantPanel : public Gtk::Box {
public:
    /// Both must outlive the panel.
    AssistantPanel(Session& session, AIAssistantViewModel& assistant);

    void focusInput();
    AssistantChat& chat() { return m_chat; }
    AssistantActions& actions() { return m_actions; }
    Gtk::Label& errorText() { return m_errorText; }
    Gtk::Widget& keyNotice() { return m_keyNotice; }

    sigc::signal<void()>& signalSettings() { return m_settings; }
    sigc::signal<void()>& signalCopied() { return m_copied; }

private:
    void buildHeader();
    void buildNotices();
    void follow();
    void changed(AIAssistantViewModel::Property property);
    void showTab();
    void showNotices();
    void relabel();

    Session& m_session;
    AIAssistantViewModel& m_assistant;
    adw::HeaderBar m_bar;
    Gtk::Box m_switch;
    Gtk::ToggleButton m_chatTab;
    Gtk::ToggleButton m_actionsTab;
    Gtk::Button m_close;
    Gtk::Stack m_stack;
    AssistantChat m_chat;
    AssistantActions m_actions;
    Gtk::Box m_keyNotice;
    Gtk::Label m_keyText;
    Gtk::Button m_keyButton;
    Gtk::Box m_error;
    Gtk::Label m_errorText;
    AssistantModelPicker m_picker;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_settings;
    sigc::signal<void()> m_copied;
};

}  // namespace corvel
