#include "ui/ShortcutsWindow.h"

#include "app/Texts.h"
#include "app/texts/EditorTexts.h"

#include <glibmm/markup.h>
#include <gtkmm/builder.h>
#include <gtkmm/shortcutswindow.h>

#include <array>
#include <span>
#include <string>

namespace corvel {

namespace {

struct GroupTitle {
    CommandGroup group;
    Text title;
};
constexpr std::array kGroups{GroupTitle{CommandGroup::file, texts::groupFile},
                             GroupTitle{CommandGroup::edit, texts::groupEdit},
                             GroupTitle{CommandGroup::format, texts::groupFormat},
                             GroupTitle{CommandGroup::view, texts::groupView},
                             GroupTitle{CommandGroup::note, texts::groupNote},
                             GroupTitle{CommandGroup::help, texts::groupHelp},
                             GroupTitle{CommandGroup::application, texts::groupApplication}};

struct OtherKey {
    Text title;
    const char* keys;
};
// Keys that belong to texts and lists rather than to a command.
constexpr std::array kTextKeys{OtherKey{texts::undoEdit, "&lt;Ctrl&gt;Z"},
                               OtherKey{texts::redoEdit, "&lt;Ctrl&gt;&lt;Shift&gt;Z"}};
constexpr std::array kListKeys{
    OtherKey{texts::contextMenu, "&lt;Shift&gt;F10 Menu"}, OtherKey{texts::rename, "F2"},
    OtherKey{texts::moveToTrash, "Delete"}, OtherKey{texts::undoOfMessage, "&lt;Ctrl&gt;Z"},
    OtherKey{texts::leaveSearch, "Escape"}};

constexpr unsigned kRowsInColumn = 12;

std::string shortcut(const std::string& title, const std::string& escapedKeys) {
    return "<child><object class='GtkShortcutsShortcut'><property name='title'>" +
           Glib::Markup::escape_text(title).raw() + "</property><property name='accelerator'>" +
           escapedKeys + "</property></object></child>";
}

std::string group(const std::string& title, const std::string& shortcuts) {
    if (shortcuts.empty()) return {};
    return "<child><object class='GtkShortcutsGroup'><property name='title'>" +
           Glib::Markup::escape_text(title).raw() + "</property>" + shortcuts + "</object></child>";
}

std::string commandsOf(CommandGroup wanted, const Localisation& texts) {
    std::string rows;
    for (const auto& command : AppCommands::table()) {
        if (command.group != wanted || *command.accelerator == '\0' || !command.isAvailable) {
            continue;
        }
        rows += shortcut(texts(command.label), Glib::Markup::escape_text(command.accelerator));
    }
    return rows;
}

std::string rowsOf(std::span<const OtherKey> keys, const Localisation& texts) {
    std::string rows;
    for (const auto& row : keys)
        rows += shortcut(texts(row.title), row.keys);
    return rows;
}

/// The window's only public form is its interface description.
std::string description(const Localisation& texts) {
    std::string groups;
    for (const auto& row : kGroups) {
        std::string rows;
        if (row.group == CommandGroup::edit) rows = rowsOf(kTextKeys, texts);
        groups += group(texts(row.title), rows + commandsOf(row.group, texts));
    }
    groups += group(texts(texts::groupLists), rowsOf(kListKeys, texts));
    return "<interface><object class='GtkShortcutsWindow' id='window'>"
           "<property name='modal'>1</property>"
           "<child><object class='GtkShortcutsSection' id='section'>"
           "<property name='section-name'>all</property>"
           "<property name='max-height'>1000</property>" +
           groups + "</object></child></object></interface>";
}

}  // namespace

void showShortcutsWindow(Gtk::Window& parent, const Localisation& texts) {
    const auto builder = Gtk::Builder::create_from_string(description(texts));
    // Not before all groups are there: with each that comes the toolkit turns the pages round.
    builder->get_object("section")->set_property("max-height", kRowsInColumn);
    auto* window = builder->get_widget<Gtk::ShortcutsWindow>("window");
    window->set_title(texts(texts::keyboardShortcuts));
    window->set_transient_for(parent);
    window->present();
}

}  // namespace corvel
