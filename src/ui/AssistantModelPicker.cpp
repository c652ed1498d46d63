#include "ui/AssistantModelPicker.h"

#include "ai/AIProviderType.h"
#include "app/texts/AssistantPanelTexts.h"
#include "ui/Accessible.h"
#include "ui/Menus.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>
#include <gtkmm/box.h>
#include <gtkmm/image.h>

#include <string>

namespace corvel {

namespace {

using Choice = Glib::Variant<Glib::ustring>;

/// The product's name without its maker's.
std::string shortName(AIProviderType type) {
    const std::string name = displayName(type);
    return name.substr(0, name.find(" ("));
}

void addItem(Gio::Menu& menu, const std::string& label, const char* action, const std::string& id) {
    const auto item = Gio::MenuItem::create(menuLabel(label), Glib::ustring());
    item->set_action_and_target(action, Choice::create(id));
    menu.append_item(item);
}

}  // namespace

AssistantModelPicker::AssistantModelPicker(AIAssistantViewModel& assistant,
                                           const Localisation& texts)
    : m_assistant(assistant), m_texts(texts) {
    add_css_class("flat");
    add_css_class("assistant-picker");
    m_label.set_ellipsize(Pango::EllipsizeMode::END);
    auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 4);
    auto& arrow = *Gtk::make_managed<Gtk::Image>();
    arrow.set_from_icon_name("pan-down-symbolic");
    content.append(m_label);
    content.append(arrow);
    set_child(content);
    set_direction(Gtk::ArrowType::UP);
    set_halign(Gtk::Align::START);
    addActions();
    refresh();
}

void AssistantModelPicker::addActions() {
    const auto group = Gio::SimpleActionGroup::create();
    m_provider = Gio::SimpleAction::create_radio_string("provider", "");
    m_provider->signal_activate().connect([this](const Glib::VariantBase& value) {
        const auto id = Glib::VariantBase::cast_dynamic<Choice>(value).get();
        if (const auto type = providerTypeOf(id.raw())) m_assistant.setSelectedProviderType(*type);
    });
    m_model = Gio::SimpleAction::create_radio_string("model", "");
    m_model->signal_activate().connect([this](const Glib::VariantBase& value) {
        m_assistant.setSelectedModel(Glib::VariantBase::cast_dynamic<Choice>(value).get());
    });
    group->add_action(m_provider);
    group->add_action(m_model);
    insert_action_group("assistant", group);
}

Glib::RefPtr<Gio::Menu> AssistantModelPicker::menu() const {
    const auto providers = Gio::Menu::create();
    for (const auto type : kAIProviderTypes)
        addItem(*providers.get(), displayName(type), "assistant.provider", rawValue(type));
    const auto models = Gio::Menu::create();
    const auto type = m_assistant.selectedProviderType();
    const auto& chosen = m_assistant.selectedModel();
    bool isKnown = false;
    for (const auto& model : modelsOf(type)) {
        addItem(*models.get(), model.label, "assistant.model", model.identifier);
        isKnown = isKnown || chosen == model.identifier;
    }
    if (!isKnown) addItem(*models.get(), modelLabel(type, chosen), "assistant.model", chosen);
    auto menu = Gio::Menu::create();
    menu->append_section(m_texts(texts::assistantProvider), providers);
    menu->append_section(m_texts(texts::assistantModel), models);
    return menu;
}

void AssistantModelPicker::refresh() {
    const auto type = m_assistant.selectedProviderType();
    const auto& model = m_assistant.selectedModel();
    const std::string name = shortName(type) + " · " + modelLabel(type, model);
    m_label.set_text(name);
    m_provider->set_state(Choice::create(rawValue(type)));
    m_model->set_state(Choice::create(model));
    set_menu_model(menu());
    labelControl(*this, m_texts.format(texts::assistantPickModel, {name}));
}

}  // namespace corvel
