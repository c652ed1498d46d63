#include "ui/AssistantPanel.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"

#include <gtkmm/image.h>

namespace corvel {

namespace {

using Tab = AIAssistantViewModel::Tab;

}  // namespace

AssistantPanel::AssistantPanel(Session& session, AIAssistantViewModel& assistant)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_assistant(assistant)
    , m_chat(session, assistant)
    , m_actions(session, assistant)
    , m_keyNotice(Gtk::Orientation::VERTICAL, 8)
    , m_error(Gtk::Orientation::HORIZONTAL, 8)
    , m_picker(assistant, session.texts) {
    add_css_class("corvel-assistant");
    buildHeader();
    buildNotices();
    m_stack.add(m_chat);
    m_stack.add(m_actions);
    m_stack.set_vexpand(true);
    append(m_bar.widget());
    append(m_keyNotice);
    append(m_stack);
    append(m_error);
    append(m_picker);
    follow();
    relabel();
    for (const auto property : {AIAssistantViewModel::Property::context,
                                AIAssistantViewModel::Property::quickActionResult}) {
        changed(property);
    }
    showTab();
    showNotices();
}

void AssistantPanel::buildHeader() {
    m_switch.add_css_class("mode-switch");
    m_switch.set_valign(Gtk::Align::CENTER);
    m_actionsTab.set_group(m_chatTab);
    m_switch.append(m_chatTab);
    m_switch.append(m_actionsTab);
    m_bar.setTitle(*Gtk::make_managed<Gtk::Box>());
    m_bar.setWindowControls(false, true);
    m_bar.packStart(m_switch);
    m_close.set_icon_name("sidebar-show-right-symbolic");
    m_bar.packEnd(m_close);
}

void AssistantPanel::buildNotices() {
    m_keyNotice.add_css_class("assistant-notice");
    m_keyText.set_wrap(true);
    m_keyText.set_xalign(0);
    m_keyButton.set_halign(Gtk::Align::START);
    m_keyNotice.append(m_keyText);
    m_keyNotice.append(m_keyButton);
    auto& icon = *Gtk::make_managed<Gtk::Image>();
    icon.set_from_icon_name("dialog-warning-symbolic");
    icon.set_valign(Gtk::Align::START);
    m_error.add_css_class("assistant-error");
    m_errorText.set_wrap(true);
    m_errorText.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    m_errorText.set_lines(6);
    m_errorText.set_ellipsize(Pango::EllipsizeMode::END);
    m_errorText.set_xalign(0);
    m_errorText.set_selectable(true);
    m_error.append(icon);
    m_error.append(m_errorText);
}

void AssistantPanel::follow() {
    m_chatTab.signal_toggled().connect([this] {
        m_assistant.setSelectedTab(m_chatTab.get_active() ? Tab::chat : Tab::quickActions);
    });
    m_close.signal_clicked().connect([this] {
        if (m_assistant.onClose) m_assistant.onClose();
    });
    m_keyButton.signal_clicked().connect([this] { m_settings.emit(); });
    m_chat.signalCopied().connect([this] { m_copied.emit(); });
    m_actions.result().signalCopied().connect([this] { m_copied.emit(); });
    m_connections.emplace_back(
        m_assistant.signalChanged().connect([this](auto property) { changed(property); }));
    m_connections.emplace_back(
        m_session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "appLanguage") relabel();
        }));
    signal_map().connect([this] { m_assistant.checkKey(); });
}

void AssistantPanel::changed(AIAssistantViewModel::Property property) {
    using Changed = AIAssistantViewModel::Property;
    m_chat.changed(property);
    m_actions.changed(property);
    switch (property) {
        case Changed::selectedTab:
            return showTab();
        case Changed::provider:
            return m_picker.refresh();
        case Changed::error:
        case Changed::isKeyMissing:
            return showNotices();
        default:
            return;
    }
}

void AssistantPanel::showTab() {
    const bool isChat = m_assistant.selectedTab() == Tab::chat;
    (isChat ? m_chatTab : m_actionsTab).set_active(true);
    if (isChat) {
        m_stack.set_visible_child(m_chat);
    } else {
        m_stack.set_visible_child(m_actions);
    }
}

void AssistantPanel::showNotices() {
    const auto& error = m_assistant.error();
    m_error.set_visible(error.has_value());
    m_errorText.set_text(error.value_or(""));
    m_keyNotice.set_visible(m_assistant.isKeyMissing());
}

void AssistantPanel::focusInput() {
    if (m_assistant.selectedTab() == Tab::chat) return m_chat.focusInput();
    m_actions.focusFirst();
}

void AssistantPanel::relabel() {
    const auto& say = m_session.texts;
    setAccessibleLabel(*this, say(texts::assistantPanel));
    m_chatTab.set_label(say(texts::assistantChat));
    m_actionsTab.set_label(say(texts::assistantActions));
    labelControl(m_close, say(texts::assistantHide),
                 std::string(say(texts::assistantHide)) + " (Ctrl+J)");
    m_keyText.set_text(say(texts::assistantNoKey));
    m_keyButton.set_label(say(texts::assistantOpenSettings));
    m_chat.relabel();
    m_actions.relabel();
    m_picker.refresh();
}

}  // namespace corvel
