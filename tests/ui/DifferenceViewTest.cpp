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
    EXPECT_THAT(text(), testing::HasSubstr("line 1\n\nline 48"));
    view.go(1);
    EXPECT_EQ(selected(), " thing");
    view.go(1);
    EXPECT_EQ(selected(), "last\nend\n");
    view.go(1);
    EXPECT_EQ(selected(), " thing");
    view.go(-1);
    EXPECT_EQ(selected(), "last\nend\n");
}

TEST_F(DifferenceViewTest, ShowsWhatAButtonFoldedAway) {
    std::string before;
    std::string after;
    for (int line = 0; line < 60; ++line) {
        const auto number = std::to_string(line);
        before += (line % 25 == 10 ? "old " : "line ") + number + "\n";
        after += (line % 25 == 10 ? "new " : "line ") + number + "\n";
    }
    view.show(before, after);
    auto buttons = view.foldButtons();
    ASSERT_EQ(buttons.size(), 3U);
    EXPECT_EQ(buttons[1]->get_label(), "Pokaż wiersze bez zmian: 20");
    defaults.setString("appLanguage", "en");
    view.relabel();
    EXPECT_EQ(buttons[1]->get_label(), "Show 20 unchanged lines");
    parent.present();
    ASSERT_TRUE(turnUntil([&] { return buttons[1]->get_mapped(); }));
    buttons[1]->grab_focus();
    buttons[1]->activate();
    ASSERT_TRUE(turnUntil([&] { return view.foldButtons().size() == 2; }));
    EXPECT_THAT(text(), testing::HasSubstr("line 12\nline 13\n"));
    EXPECT_THAT(text(), testing::HasSubstr("line 32\nline 33\nline 34\n"));
    EXPECT_TRUE(view.textView().is_focus()) << "the focus is not lost with the button";
    view.go(-1);
    EXPECT_EQ(selected(), "oldnew") << "changes behind it are found in their new places";
    view.go(1);
    EXPECT_EQ(selected(), "oldnew");
    for (auto* button : view.foldButtons())
        button->activate();
    ASSERT_TRUE(turnUntil([&] { return view.foldButtons().empty(); }));
    EXPECT_THAT(text(), testing::StartsWith("line 0\nline 1\n"));
    EXPECT_THAT(text(), testing::EndsWith("line 58\nline 59\n"));
    view.go(-1);
    EXPECT_EQ(selected(), "oldnew");
}

}  // namespace
}  // namespace corvel
