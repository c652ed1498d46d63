#include "library/EditedText.h"
#include "ui/BufferEdits.h"
#include "ui/NoteBuffers.h"

#include <gtest/gtest.h>
#include <gtkmm/init.h>

#include <random>

namespace corvel {
namespace {

TEST(BufferEdits, ApplyingThemGivesTheTextOfTheBufferWhateverChangesIt) {
    gtk_init();
    Gtk::init_gtkmm_internals();
    const auto buffer = NoteBuffers::emptyBuffer();
    buffer->set_text("zażółć 🙂\r\ngęślą");
    EditedText text(NoteBuffers::textOf(*buffer));
    BufferEdits edits;
    edits.follow(buffer);
    edits.signalEdited().connect([&](const TextEdit& edit) { ASSERT_TRUE(text.apply(edit)); });
    // As an editor does that puts pairs: one key is stopped and something else comes in its place.
    buffer->signal_insert().connect(
        [&](Gtk::TextBuffer::iterator& place, const Glib::ustring& added, int) {
            if (added != "(") return;
            g_signal_stop_emission_by_name(buffer->gobj(), "insert-text");
            place = buffer->insert(place, "()");
        },
        false);
    std::mt19937 random(3);
    for (int i = 0; i < 500; ++i) {
        const int count = buffer->get_char_count();
        const int place = static_cast<int>(random()) % (count + 1);
        const auto at = buffer->get_iter_at_offset(std::abs(place));
        switch (random() % 5) {
            case 0:
                buffer->insert(at, "słowo\r\n");
                break;
            case 1:
                buffer->insert(at, "(");
                break;
            case 2:
                buffer->erase(at, buffer->get_iter_at_offset(std::abs(place) + 3));
                break;
            case 3:
                if (buffer->get_can_undo()) buffer->undo();
                break;
            default:
                if (buffer->get_can_redo()) buffer->redo();
        }
        ASSERT_EQ(text.text(), NoteBuffers::textOf(*buffer)) << "after step " << i;
    }
    edits.stop();
    buffer->set_text("");
    EXPECT_NE(text.text(), "");
}

}  // namespace
}  // namespace corvel
