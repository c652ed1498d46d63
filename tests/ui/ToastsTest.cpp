#include "ui/Toasts.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>
#include <gtkmm/label.h>

#include <string>

namespace corvel {
namespace {

TEST(Toasts, PressesTheNewestButtonOfThatNameOnce) {
    adw_init();
    Gtk::init_gtkmm_internals();
    Toasts toasts;
    int undone = 0;
    int details = 0;
    EXPECT_FALSE(toasts.press("Undo")) << "nothing is there";
    toasts.show("Moved to Trash: 1 note", "Undo", [&] { ++undone; });
    EXPECT_TRUE(toasts.press("Undo"));
    EXPECT_FALSE(toasts.press("Undo")) << "it has gone";
    EXPECT_EQ(undone, 1);

    toasts.show("Moved to Trash: 1 note", "Undo", [&] { ++undone; });
    toasts.show("Imported 3 files", "Details", [&] { ++details; });
    EXPECT_FALSE(toasts.press("Undo")) << "the newest means something else";
    EXPECT_EQ(undone, 1);
    EXPECT_EQ(details, 0);
}

TEST(Toasts, LeavesOnlyEarlierNewsWithAButtonBehindTheNewest) {
    adw_init();
    Gtk::init_gtkmm_internals();
    Toasts toasts;
    const auto shown = [&toasts] {
        std::string titles;
        const auto look = [&titles](auto& self, Gtk::Widget& widget) -> void {
            if (widget.has_css_class("heading"))
                titles += dynamic_cast<Gtk::Label&>(widget).get_text() + ";";
            for (auto* child = widget.get_first_child(); child != nullptr;
                 child = child->get_next_sibling())
                self(self, *child);
        };
        look(look, toasts.widget());
        return titles;
    };
    std::string undone;
    toasts.show("Theme saved");
    toasts.show("Deleted: A", "Undo", [&] { undone += "A"; });
    toasts.show("Deleted: B", "Undo", [&] { undone += "B"; });
    EXPECT_TRUE(toasts.press("Undo"));
    EXPECT_TRUE(toasts.press("Undo")) << "what was deleted before can still be brought back";
    EXPECT_EQ(undone, "BA");
    EXPECT_EQ(shown().find("Theme saved"), std::string::npos) << shown();
}

}  // namespace
}  // namespace corvel
