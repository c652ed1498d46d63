#include "ui/AssistantResult.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "platform/Text.h"
#include "ui/Accessible.h"

#include <gdkmm/clipboard.h>

namespace corvel {

namespace {

constexpr const char* kTextPage = "text";
constexpr const char* kDifferencesPage = "differences";
// A selection is shown to be recognised, not read.
constexpr std::size_t kMostOriginal = 2000;
constexpr int kOriginalHeight = 120;

}  // namespace

AssistantResult::AssistantResult(Session& session, AIAssistantViewModel& assistant)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_assistant(assistant)
    , m_text(
          session,
          [this]() -> const std::vector<AIMessage>& { return m_message; },
          false,
          texts::assistantResult)
    , m_differences(session.texts) {
    build();
    m_connections.emplace_back(
        assistant.signalResultPiece().connect([this](std::string_view piece) {
            if (m_message.empty()) return;
            m_message.back().content += piece;
            m_text.append(piece);
        }));
    m_backButton.signal_clicked().connect([this] { m_back.emit(); });
    m_apply.signal_clicked().connect([this] { m_assistant.applyResult(); });
    m_stop.signal_clicked().connect([this] { m_assistant.stopQuickAction(); });
    m_copy.signal_clicked().connect([this] {
        get_clipboard()->set_text(m_assistant.quickActionResult());
        m_copied.emit();
    });
    relabel();
}

void AssistantResult::build() {
    auto& top = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    top.add_css_class("assistant-result-bar");
    m_backButton.set_icon_name("go-previous-symbolic");
    m_backButton.add_css_class("flat");
    m_title.add_css_class("heading");
    m_title.set_xalign(0);
    top.append(m_backButton);
    top.append(m_title);
    m_original.set_wrap(true);
    m_original.set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    m_original.set_xalign(0);
    m_original.set_selectable(true);
    auto& scroller = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_propagate_natural_height(true);
    scroller.set_max_content_height(kOriginalHeight);
    scroller.set_child(m_original);
    m_originalExpander.set_child(scroller);
    m_originalExpander.add_css_class("assistant-original");
    m_stack.add(m_text, kTextPage);
    m_stack.add(m_differences, kDifferencesPage);
    m_stack.set_vexpand(true);
    auto& buttons = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 6);
    buttons.add_css_class("assistant-buttons");
    m_apply.add_css_class("suggested-action");
    m_apply.set_hexpand(true);
    for (auto* button : {&m_apply, &m_copy, &m_stop})
        buttons.append(*button);
    append(top);
    append(m_originalExpander);
    append(m_stack);
    append(buttons);
}

bool AssistantResult::replaces() const {
    const auto type = m_assistant.quickActionResultType();
    return type == AIActionResultType::replaceSelection ||
           type == AIActionResultType::replaceDocument;
}

const Text* AssistantResult::applyLabel() const {
    switch (m_assistant.quickActionResultType()) {
        case AIActionResultType::replaceSelection:
            return &texts::assistantReplaceSelection;
        case AIActionResultType::replaceDocument:
            return &texts::assistantReplaceDocument;
        case AIActionResultType::insertAtTop:
            return &texts::assistantInsertAtTop;
        case AIActionResultType::review:
            return &texts::assistantApplyCorrections;
        case AIActionResultType::copyOnly:
            break;
    }
    return nullptr;
}

void AssistantResult::changed(AIAssistantViewModel::Property property) {
    using Changed = AIAssistantViewModel::Property;
    if (property == Changed::quickActionResult) {
        const bool begins = m_assistant.isQuickActionStreaming();
        if (begins) {
            m_message.assign(1, {});
            m_message.back().role = AIMessage::Role::assistant;
            m_message.back().isStreaming = true;
            m_differences.clear();
        } else if (!m_message.empty()) {
            m_message.back().isStreaming = false;
        }
        m_text.sync();
    }
    if (property == Changed::quickActionResult || property == Changed::isQuickActionStreaming)
        refresh();
}

void AssistantResult::refresh() {
    const bool isComplete = m_assistant.isQuickActionComplete();
    const auto& original = m_assistant.quickActionOriginal();
    m_originalExpander.set_visible(original.has_value());
    if (original)
        m_original.set_text(text::repaired(text::prefixByBytes(*original, kMostOriginal)));
    const bool showsDifferences = isComplete && replaces();
    if (showsDifferences && m_stack.get_visible_child_name() != kDifferencesPage) {
        m_differences.show(original ? *original : m_assistant.quickActionDocument(),
                           m_assistant.quickActionResult());
    }
    m_stack.set_visible_child(showsDifferences ? kDifferencesPage : kTextPage);
    showButtons();
}

void AssistantResult::showButtons() {
    const bool isStreaming = m_assistant.isQuickActionStreaming();
    Gtk::Button* focused = nullptr;
    for (auto* button : {&m_apply, &m_copy, &m_stop})
        if (button->is_focus()) focused = button;
    const auto* label = applyLabel();
    m_apply.set_visible(m_assistant.isQuickActionComplete() && label != nullptr);
    if (label != nullptr) m_apply.set_label(m_session.texts(*label));
    m_copy.set_visible(!isStreaming && !m_assistant.quickActionResult().empty());
    m_stop.set_visible(isStreaming);
    if (focused != nullptr && !focused->get_visible()) focusButton();
}

void AssistantResult::focusButton() {
    for (auto* button : {&m_stop, &m_apply, &m_copy, &m_backButton}) {
        if (button->get_visible() && button->grab_focus()) return;
    }
}

void AssistantResult::relabel() {
    const auto& say = m_session.texts;
    labelControl(m_backButton, say(texts::assistantBack));
    m_title.set_text(say(texts::assistantResult));
    m_originalExpander.set_label(say(texts::assistantOriginal));
    m_copy.set_label(say(texts::assistantCopy));
    m_stop.set_label(say(texts::assistantStop));
    m_text.relabel();
    m_differences.relabel();
    refresh();
}

}  // namespace corvel
