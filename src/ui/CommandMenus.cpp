#include "ui/CommandMenus.h"

#include "app/Texts.h"

#include <string>

namespace corvel {

namespace {

Glib::RefPtr<Gio::MenuItem> radioItem(const char* label,
                                      const char* action,
                                      const std::string& value) {
    auto item = Gio::MenuItem::create(label, Glib::ustring{});
    item->set_action_and_target(action, Glib::Variant<Glib::ustring>::create(value));
    return item;
}

}  // namespace

CommandMenus::CommandMenus(const Session& session) : m_session(session) {
    relabel();
}

void CommandMenus::relabel() {
    fillPrimary();
    fillList();
}

void CommandMenus::appendCommand(Gio::Menu& menu, CommandID id) const {
    const auto& command = AppCommands::command(id);
    menu.append(m_session.texts(command.label), std::string("win.") + command.actionName);
}

Glib::RefPtr<Gio::Menu> CommandMenus::groupMenu(CommandGroup group) const {
    auto menu = Gio::Menu::create();
    for (const auto& command : AppCommands::table()) {
        // The language is chosen by name, in a menu of its own.
        if (command.id == CommandID::switchLanguage) continue;
        if (command.group == group) appendCommand(*menu, command.id);
    }
    return menu;
}

Glib::RefPtr<Gio::Menu> CommandMenus::languageMenu() const {
    auto menu = Gio::Menu::create();
    // Each language is named in itself, so that it is found whatever the interface speaks.
    menu->append_item(radioItem(texts::polish.polish, "win.language", "pl"));
    menu->append_item(radioItem(texts::english.english, "win.language", "en"));
    return menu;
}

Glib::RefPtr<Gio::Menu> CommandMenus::sizeMenu() const {
    auto menu = Gio::Menu::create();
    const auto append = [&](const Text& label, UISize size) {
        menu->append_item(radioItem(m_session.texts(label), "win.uiSize", rawValue(size)));
    };
    append(texts::sizeSmall, UISize::small);
    append(texts::sizeNormal, UISize::normal);
    append(texts::sizeLarge, UISize::large);
    return menu;
}

void CommandMenus::fillPrimary() {
    const auto& texts = m_session.texts;
    m_primary = Gio::Menu::create();
    const auto groups = Gio::Menu::create();
    groups->append_submenu(texts(texts::groupFile), groupMenu(CommandGroup::file));
    groups->append_submenu(texts(texts::groupEdit), groupMenu(CommandGroup::edit));
    groups->append_submenu(texts(texts::groupFormat), groupMenu(CommandGroup::format));
    groups->append_submenu(texts(texts::groupView), groupMenu(CommandGroup::view));
    groups->append_submenu(texts(texts::groupNote), groupMenu(CommandGroup::note));
    m_primary->append_section(groups);
    const auto choices = Gio::Menu::create();
    choices->append_submenu(texts(texts::language), languageMenu());
    choices->append_submenu(texts(texts::interfaceSize), sizeMenu());
    m_primary->append_section(choices);
    m_primary->append_section(groupMenu(CommandGroup::help));
    m_primary->append_section(groupMenu(CommandGroup::application));
}

void CommandMenus::fillList() {
    m_sort = Gio::Menu::create();
    const auto orders = Gio::Menu::create();
    for (const auto option : kSortOptions) {
        orders->append_item(
            radioItem(m_session.texts(label(option)), "win.sort", rawValue(option)));
    }
    m_sort->append_section(m_session.texts(texts::sortBy), orders);
    m_import = Gio::Menu::create();
    appendCommand(*m_import, CommandID::importMarkdown);
    appendCommand(*m_import, CommandID::importFolder);
}

}  // namespace corvel
