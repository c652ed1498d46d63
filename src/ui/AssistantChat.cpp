#include "ui/AssistantChat.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"

#include <gdkmm/clipboard.h>

namespace corvel {

namespace {

constexpr const char* kEmptyPage = "empty";
constexpr const char* kMessagesPage = "messages";

}  // namespace

AssistantChat::AssistantChat(Session& session, AIAssistantViewModel& assistant)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_assistant(assistant)
    , m_context(Gtk::Orientation::HORIZONTAL, 6)
    , m_messages(
          session,
          [&assistant]() -> const std::vector<AIMessage>& { return assistant.messages(); },
          true,
          texts::assistantMessages) {
    m_contextIcon.set_from_icon_name("corvel-file-symbolic");
    m_context.add_css_class("assistant-context");
    m_contextText.set_xalign(0);
    m_contextText.set_ellipsize(Pango::EllipsizeMode::END);
    m_contextText.set_hexpand(true);
    m_clear.set_icon_name("user-trash-symbolic");
    m_clear.add_css_class("flat");
    m_context.append(m_contextIcon);
    m_context.append(m_contextText);
    m_context.append(m_clear);
    m_clear.signal_clicked().connect([this] {
        m_assistant.clearChat();
        m_input.focusText();
    });
    m_empty.widget().add_css_class("compact");
    m_stack.add(m_empty.widget(), kEmptyPage);
    m_stack.add(m_messages, kMessagesPage);
    m_stack.set_vexpand(true);
    append(m_context);
    append(m_stack);
    append(m_input);
    m_messages.signalAction().connect(
        [this](auto verb, const AIMessage& message) { act(verb, message); });
    m_connections.emplace_back(assistant.signalPiece().connect(
        [this](std::string_view piece) { m_messages.append(piece); }));
    m_input.signalChanged().connect([this] { m_assistant.setInputText(m_input.text()); });
    m_input.signalSend().connect([this] { m_assistant.sendChatMessage(); });
    m_input.signalStop().connect([this] { m_assistant.stopChat(); });
    relabel();
    showMessages();
}

void AssistantChat::changed(AIAssistantViewModel::Property property) {
    using Changed = AIAssistantViewModel::Property;
    switch (property) {
        case Changed::messages:
            showMessages();
            return showReplaceable();
        case Changed::inputText:
            return m_input.setText(m_assistant.inputText());
        case Changed::isStreaming:
            return m_input.setStreaming(m_assistant.isStreaming());
        case Changed::context:
            showContext();
            return showReplaceable();
        default:
            return;
    }
}

void AssistantChat::showMessages() {
    const bool isEmpty = m_assistant.messages().empty();
    m_stack.set_visible_child(isEmpty ? kEmptyPage : kMessagesPage);
    m_clear.set_visible(!isEmpty);
    showContext();
    m_messages.sync();
}

void AssistantChat::showContext() {
    const bool hasNote = m_assistant.context().noteID.has_value();
    m_contextIcon.set_visible(hasNote);
    m_contextText.set_text(hasNote ? m_session.texts(texts::assistantContext) : "");
    m_context.set_visible(hasNote || m_clear.get_visible());
}

void AssistantChat::showReplaceable() {
    std::vector<Uuid> ids;
    for (const auto& message : m_assistant.messages()) {
        if (m_assistant.canReplaceSelection(message)) ids.push_back(message.id);
    }
    m_messages.setReplaceable(ids);
}

void AssistantChat::act(MessageFeed::Verb verb, const AIMessage& message) {
    switch (verb) {
        case MessageFeed::Verb::copy:
            get_clipboard()->set_text(message.content);
            return m_copied.emit();
        case MessageFeed::Verb::insert:
            return m_assistant.insertMessage(message);
        case MessageFeed::Verb::replace:
            return m_assistant.replaceSelection(message);
    }
}

void AssistantChat::relabel() {
    const auto& say = m_session.texts;
    showContext();
    labelControl(m_clear, say(texts::assistantClear));
    m_empty.set("corvel-sparkle-symbolic", say(texts::assistantEmptyTitle),
                say(texts::assistantEmpty));
    m_input.relabel(say);
    m_messages.relabel();
}

}  // namespace corvel
