#pragma once

#include "ui/AssistantResult.h"

#include <gtkmm/grid.h>

namespace corvel {

/// The one-click actions on the selection and on the whole note, and the result of the last one.
class AssistantActions : public Gtk::Stack {
public:
    /// Both must outlive the actions.
    AssistantActions(Session& session, AIAssistantViewModel& assistant);

    void changed(AIAssistantViewModel::Property property);
    void focusFirst();
    AssistantResult& result() { return m_result; }
    void relabel();

private:
    void build();
    void addSection(Gtk::Box& list, Gtk::Label& title, Gtk::Label& note, Gtk::Grid& grid);
    Gtk::Button& addButton(Gtk::Grid& grid, std::size_t index, const Text& label);
    void refresh();

    Session& m_session;
    AIAssistantViewModel& m_assistant;
    Gtk::Label m_selectionTitle;
    Gtk::Label m_selectionNote;
    Gtk::Grid m_selectionGrid;
    Gtk::Label m_documentTitle;
    Gtk::Label m_documentNote;
    Gtk::Grid m_documentGrid;
    Gtk::Button m_last;
    AssistantResult m_result;
    std::vector<std::pair<Gtk::Button*, const Text*>> m_buttons;
};

}  // namespace corvel
