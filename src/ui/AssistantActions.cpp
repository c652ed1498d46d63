#include "ui/AssistantActions.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"

#include <gtkmm/root.h>

namespace corvel {

namespace {

constexpr const char* kListPage = "list";
constexpr const char* kResultPage = "result";

}  // namespace

AssistantActions::AssistantActions(Session& session, AIAssistantViewModel& assistant)
    : m_session(session), m_assistant(assistant), m_result(session, assistant) {
    build();
    m_result.signalBack().connect([this] {
        set_visible_child(kListPage);
        m_last.grab_focus();
    });
    m_last.signal_clicked().connect([this] { set_visible_child(kResultPage); });
    relabel();
}

void AssistantActions::build() {
    auto& list = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    list.add_css_class("assistant-actions");
    m_last.set_margin_bottom(12);
    list.append(m_last);
    addSection(list, m_selectionTitle, m_selectionNote, m_selectionGrid);
    std::size_t index = 0;
    for (const auto action : kAIQuickActions) {
        addButton(m_selectionGrid, index++, labelOf(action))
            .signal_clicked()
            .connect([this, action] { m_assistant.runQuickAction(action); });
    }
    addSection(list, m_documentTitle, m_documentNote, m_documentGrid);
    index = 0;
    for (const auto action : kAIDocumentActions) {
        addButton(m_documentGrid, index++, labelOf(action))
            .signal_clicked()
            .connect([this, action] { m_assistant.runDocumentAction(action); });
    }
    auto& scroller = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_child(list);
    add(scroller, kListPage);
    add(m_result, kResultPage);
    set_vexpand(true);
}

void AssistantActions::addSection(Gtk::Box& list,
                                  Gtk::Label& title,
                                  Gtk::Label& note,
                                  Gtk::Grid& grid) {
    title.add_css_class("heading");
    note.add_css_class("dim-label");
    note.add_css_class("caption");
    for (auto* label : {&title, &note}) {
        label->set_xalign(0);
        label->set_wrap(true);
        list.append(*label);
    }
    grid.set_column_homogeneous(true);
    grid.set_column_spacing(6);
    grid.set_row_spacing(6);
    grid.set_margin_top(8);
    grid.set_margin_bottom(20);
    list.append(grid);
}

Gtk::Button& AssistantActions::addButton(Gtk::Grid& grid, std::size_t index, const Text& label) {
    auto& button = *Gtk::make_managed<Gtk::Button>("");
    auto& text = *Gtk::make_managed<Gtk::Label>();
    text.set_wrap(true);
    text.set_justify(Gtk::Justification::CENTER);
    button.set_child(text);
    button.add_css_class("assistant-action");
    grid.attach(button, static_cast<int>(index % 2), static_cast<int>(index / 2));
    m_buttons.emplace_back(&button, &label);
    return button;
}

void AssistantActions::changed(AIAssistantViewModel::Property property) {
    using Changed = AIAssistantViewModel::Property;
    const auto* root = get_root();
    const auto* focus = root == nullptr ? nullptr : root->get_focus();
    const bool hadFocus = focus != nullptr && focus->is_ancestor(*this);
    m_result.changed(property);
    const bool begins =
        property == Changed::quickActionResult && m_assistant.isQuickActionStreaming();
    if (begins) {
        set_visible_child(kResultPage);
        if (hadFocus) m_result.focusButton();
    }
    if (property == Changed::context || property == Changed::quickActionResult ||
        property == Changed::isQuickActionStreaming) {
        refresh();
    }
}

void AssistantActions::refresh() {
    const auto& context = m_assistant.context();
    const bool isFree = !m_assistant.isQuickActionStreaming();
    const bool hasSelection = !context.selectedText.empty();
    m_selectionGrid.set_sensitive(isFree && hasSelection);
    m_documentGrid.set_sensitive(isFree && context.noteID.has_value());
    m_selectionNote.set_text(m_session.texts(hasSelection ? texts::assistantSelectionReady
                                                          : texts::assistantSelectionNote));
    m_last.set_visible(!m_assistant.quickActionResult().empty() || !isFree);
}

void AssistantActions::focusFirst() {
    child_focus(Gtk::DirectionType::TAB_FORWARD);
}

void AssistantActions::relabel() {
    const auto& say = m_session.texts;
    m_selectionTitle.set_text(say(texts::assistantSelectionActions));
    m_documentTitle.set_text(say(texts::assistantDocumentActions));
    m_documentNote.set_text(say(texts::assistantDocumentNote));
    m_last.set_label(say(texts::assistantLastResult));
    for (const auto& [button, label] : m_buttons) {
        dynamic_cast<Gtk::Label&>(*button->get_child()).set_text(say(*label));
        setAccessibleLabel(*button, say(*label));
    }
    m_result.relabel();
    refresh();
}

}  // namespace corvel
