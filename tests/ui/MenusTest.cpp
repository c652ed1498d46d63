#include "platform/Handle.h"
#include "support/MainLoop.h"
#include "ui/Menus.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/box.h>
#include <gtkmm/init.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/window.h>

#include <string>

namespace corvel {
namespace {

std::string focusedItem(Gtk::Window& window) {
    auto* focused = gtk_window_get_focus(window.gobj());
    if (focused == nullptr) return {};
    char* text = nullptr;
    g_object_get(focused, "text", &text, nullptr);
    const Handle<char, g_free> held(text);
    return text == nullptr ? std::string() : text;
}

TEST(Menus, ASubmenuOpensAtItsFirstItem) {
    gtk_init();
    Gtk::init_gtkmm_internals();
    const auto folders = Gio::Menu::create();
    folders->append(menuLabel("my_notes"), "note.folder");
    const auto model = Gio::Menu::create();
    model->append_submenu("Add to Folder", folders);
    const auto actions = Gio::SimpleActionGroup::create();
    actions->add_action("folder", [] {});

    Gtk::Window window;
    Gtk::Box box;
    box.insert_action_group("note", actions);
    window.set_child(box);
    window.present();
    ASSERT_TRUE(turnUntil([&] { return window.get_mapped(); }));
    Gtk::PopoverMenu menu(model);
    focusFirstOfSubmenus(menu);
    menu.set_parent(box);
    menu.popup();
    ASSERT_TRUE(turnUntil([&] { return focusedItem(window) == "Add to Folder"; }));
    gtk_widget_activate(gtk_window_get_focus(window.gobj()));
    EXPECT_TRUE(turnUntil([&] { return focusedItem(window) == "my_notes"; }));
    menu.unparent();
}

}  // namespace
}  // namespace corvel
