#pragma once

#include "ai/AIAssistantViewModel.h"

#include <giomm/menu.h>
#include <giomm/simpleaction.h>
#include <gtkmm/label.h>
#include <gtkmm/menubutton.h>

namespace corvel {

/// "Claude · Sonnet 4.5": which service and model answer, and a menu of the others.
class AssistantModelPicker : public Gtk::MenuButton {
public:
    /// Both must outlive the picker.
    AssistantModelPicker(AIAssistantViewModel& assistant, const Localisation& texts);

    /// Shows what is chosen now.
    void refresh();

private:
    void addActions();
    Glib::RefPtr<Gio::Menu> menu() const;

    AIAssistantViewModel& m_assistant;
    const Localisation& m_texts;
    Gtk::Label m_label;
    Glib::RefPtr<Gio::SimpleAction> m_provider;
    Glib::RefPtr<Gio::SimpleAction> m_model;
};

}  // namespace corvel
