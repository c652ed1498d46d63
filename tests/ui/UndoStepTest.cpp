#include "ui/UndoStep.h"

#include <gtest/gtest.h>
#include <gtkmm/init.h>
#include <gtkmm/textbuffer.h>

#include <string>

namespace corvel {
namespace {

class UndoStepTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
    }

    std::string text() const { return buffer->get_text(); }
    int cursor() const { return buffer->get_insert()->get_iter().get_offset(); }

    const Glib::RefPtr<Gtk::TextBuffer> buffer = Gtk::TextBuffer::create();
};

TEST_F(UndoStepTest, StaysApartFromWhatWasTypedAndPutsTheCursorBehindIt) {
    for (const std::string inserted : {"x", "![Żuk](attachment://1)", "two\n\nparagraphs\n"}) {
        buffer->set_enable_undo(false);
        buffer->set_text("tail");
        buffer->set_enable_undo(true);
        buffer->place_cursor(buffer->begin());
        buffer->insert_interactive_at_cursor("typed ", true);
        insertAsUndoStep(*buffer, buffer->get_insert()->get_iter(), inserted);
        const int behind = cursor();
        buffer->insert_interactive_at_cursor("on", true);
        EXPECT_EQ(text(), "typed " + inserted + "ontail");
        buffer->undo();
        EXPECT_EQ(text(), "typed " + inserted + "tail");
        buffer->undo();
        EXPECT_EQ(text(), "typed tail");
        EXPECT_EQ(cursor(), 6);
        buffer->redo();
        EXPECT_EQ(text(), "typed " + inserted + "tail");
        EXPECT_EQ(cursor(), behind);
    }
}

}  // namespace
}  // namespace corvel
