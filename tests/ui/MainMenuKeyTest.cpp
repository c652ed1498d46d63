#include "WindowTest.h"
#include "ui/MainMenuKey.h"

#include <giomm/menu.h>
#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/textview.h>

namespace corvel {
namespace {

class MainMenuKeyTest : public WindowTest {
protected:
    MainMenuKeyTest() {
        menu->append("Quit", "app.quit");
        box.append(button);
        box.append(text);
        parent.set_child(box);
        parent.present();
        text.grab_focus();
    }
    ~MainMenuKeyTest() override { parent.unset_child(); }

    bool isOpen() { return !all<Gtk::PopoverMenu>(button).empty() && !text.has_focus(); }

    Glib::RefPtr<Gio::Menu> menu = Gio::Menu::create();
    Gtk::Box box;
    Gtk::Button button;
    Gtk::TextView text;
    Gtk::Widget* place = &button;
    MainMenuKey key{parent, menu, [this] { return place; }};
};

TEST_F(MainMenuKeyTest, OpensTheMenuAndGivesTheFocusBack) {
    type("F10");
    EXPECT_TRUE(turnUntil([this] { return isOpen(); }));
    type("Escape");
    EXPECT_TRUE(turnUntil([this] { return text.has_focus(); }));
}

TEST_F(MainMenuKeyTest, LeavesOtherKeysAndWindowsWithAButtonAlone) {
    type("ctrl+F10");
    place = nullptr;
    type("F10");
    type("a");
    EXPECT_TRUE(turnUntil([this] { return text.get_buffer()->get_text() == "a"; }));
    EXPECT_FALSE(isOpen());
}

}  // namespace
}  // namespace corvel
