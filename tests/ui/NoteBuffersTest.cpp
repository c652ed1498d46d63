#include "ui/NoteBuffers.h"

#include <gtest/gtest.h>
#include <gtkmm/init.h>

#include <string>

namespace corvel {
namespace {

class NoteBuffersTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
    }

    /// Types as a user does: a step that can be undone.
    static void type(const Glib::RefPtr<Gtk::TextBuffer>& buffer, const std::string& text) {
        buffer->insert_interactive(buffer->end(), text, true);
    }

    NoteBuffers buffers;
    const Uuid first = Uuid::random();
    const Uuid second = Uuid::random();
};

TEST_F(NoteBuffersTest, UndoStaysWithinItsNoteAndIsThereWhenTheNoteComesBack) {
    auto buffer = buffers.bufferFor(first, "one");
    type(buffer, " more");
    const auto other = buffers.bufferFor(second, "two");
    EXPECT_FALSE(other->get_can_undo()) << "opening a note is no step";
    buffer = buffers.bufferFor(first, "one more");
    ASSERT_TRUE(buffer->get_can_undo());
    buffer->undo();
    EXPECT_EQ(NoteBuffers::textOf(*buffer), "one");
    EXPECT_FALSE(buffer->get_can_undo());
    EXPECT_EQ(NoteBuffers::textOf(*other), "two");
}

TEST_F(NoteBuffersTest, TextThatChangedElsewhereIsOneStepAndTheCursorStaysAtItsWords) {
    const std::string before = "# Zażółć\none\ntwo\nthree\nfour\n";
    const std::string after = "# Zażółć gęślą\nnew\none\nthree\nFOUR\nend\n";
    const auto buffer = buffers.bufferFor(first, before);
    const auto found = before.find("three") - 4;  // four letters of two bytes stand before it
    buffer->place_cursor(buffer->get_iter_at_offset(static_cast<int>(found) + 2));
    EXPECT_EQ(buffers.bufferFor(first, after), buffer);
    EXPECT_EQ(NoteBuffers::textOf(*buffer), after);
    auto cursor = buffer->get_insert()->get_iter();
    cursor.forward_chars(3);
    EXPECT_EQ(buffer->get_text(buffer->get_insert()->get_iter(), cursor), "ree");
    buffer->undo();
    EXPECT_EQ(NoteBuffers::textOf(*buffer), before);
    EXPECT_FALSE(buffer->get_can_undo());
    buffer->redo();
    EXPECT_EQ(NoteBuffers::textOf(*buffer), after);
    EXPECT_EQ(NoteBuffers::textOf(*buffers.bufferFor(first, "")), "");
}

TEST_F(NoteBuffersTest, TheBufferInUseOutlivesAllOthers) {
    const auto held = buffers.bufferFor(first, "held");
    type(held, " and edited");
    for (int i = 0; i < 40; ++i)
        buffers.bufferFor(Uuid::random(), "other");
    EXPECT_EQ(NoteBuffers::textOf(*held), "held and edited") << "who shows it keeps it";
    const auto again = buffers.bufferFor(first, "as saved");
    EXPECT_EQ(NoteBuffers::textOf(*again), "as saved");
    const std::string large(9'000'000, 'x');
    const auto largest = buffers.bufferFor(second, large);
    EXPECT_EQ(buffers.bufferFor(second, large), largest) << "however large";
}

}  // namespace
}  // namespace corvel
