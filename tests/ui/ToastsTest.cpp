#include "ui/Toasts.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>

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

}  // namespace
}  // namespace corvel
