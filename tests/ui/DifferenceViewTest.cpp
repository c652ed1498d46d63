#include "ui/DifferenceView.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>

namespace corvel {
namespace {

class DifferenceViewTest : public WindowTest {
protected:
    DifferenceViewTest() { parent.set_child(view); }

    std::string text() { return view.textView().get_buffer()->get_text(); }
    std::string selected() {
        Gtk::TextBuffer::iterator begin;
        Gtk::TextBuffer::iterator end;
        view.textView().get_buffer()->get_selection_bounds(begin, end);
        return view.textView().get_buffer()->get_text(begin, end);
    }
    /// The names of the tags at the first place of `word`.
    std::vector<std::string> tagsAt(const std::string& word) {
        const auto buffer = view.textView().get_buffer();
        Gtk::TextBuffer::iterator begin;
        Gtk::TextBuffer::iterator end;
        std::vector<std::string> names;
        if (!buffer->begin().forward_search(word, Gtk::TextSearchFlags{}, begin, end)) return names;
        for (const auto& tag : begin.get_tags())
            names.push_back(tag->property_name().get_value());
        return names;
    }

    DifferenceView view{session.texts};
};

TEST_F(DifferenceViewTest, MarksWhatWentAndCame) {
    view.show("Ala ma kota i psa.\n", "Ala miała kota i psa.\n");
    EXPECT_EQ(text(), "Ala mamiała kota i psa.\n");
    EXPECT_THAT(tagsAt("ma"), testing::ElementsAre("removed"));
    EXPECT_THAT(tagsAt("miała"), testing::ElementsAre("added"));
    EXPECT_THAT(tagsAt("kota"), testing::IsEmpty());
    EXPECT_EQ(view.changeCount(), 1U);
    view.show("same\n", "same\n");
    EXPECT_EQ(text(), "same\n");
    EXPECT_EQ(view.changeCount(), 0U);
}

TEST_F(DifferenceViewTest, GoesThroughTheChangesAndFoldsTheRest) {
    std::string rest;
    for (int line = 0; line < 50; ++line)
        rest += "line " + std::to_string(line) + "\n";
    view.show("first\n" + rest + "last\n", "first thing\n" + rest + "end\n");
    EXPECT_THAT(text(), testing::HasSubstr("line 1\n… wiersze bez zmian: 46\nline 48"));
    view.go(1);
    EXPECT_EQ(selected(), " thing");
    view.go(1);
    EXPECT_EQ(selected(), "last\nend\n");
    view.go(1);
    EXPECT_EQ(selected(), " thing");
    view.go(-1);
    EXPECT_EQ(selected(), "last\nend\n");
}

}  // namespace
}  // namespace corvel
