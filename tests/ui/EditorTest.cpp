#include "KeyPress.h"
#include "app/settings/Preferences.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "themes/ThemeManager.h"
#include "ui/EditingController.h"
#include "ui/EditorMenu.h"
#include "ui/EditorPane.h"
#include "ui/FindController.h"
#include "ui/SpellChecker.h"
#include "ui/SpellDictionaries.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/box.h>
#include <gtkmm/init.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <string>
#include <vector>

namespace corvel {
namespace {

/// Comes before the first widget.
struct Toolkit {
    Toolkit() {
        gtk_init();
        Gtk::init_gtkmm_internals();
        adw_init();
    }
};

/// The editor in a window of its own; what is typed comes as from an input method.
class Editor : public testing::Test, Toolkit {
protected:
    Editor() {
        m_box.append(bar);
        m_box.append(pane);
        m_window.set_child(m_box);
        m_window.set_default_size(600, 400);
        m_window.present();
        pane.open(Uuid::random(), "");
        EXPECT_TRUE(turnUntil([this] { return m_window.get_mapped(); }));
    }

    GtkTextBuffer* buffer() { return gtk_text_view_get_buffer(pane.textView().gobj()); }
    std::string text() { return pane.text(); }

    void type(const std::string& keys) {
        for (const char* at = keys.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
            const auto length = static_cast<int>(g_utf8_next_char(at) - at);
            gtk_text_buffer_begin_user_action(buffer());
            gtk_text_buffer_delete_selection(buffer(), TRUE, TRUE);
            gtk_text_buffer_insert_interactive_at_cursor(buffer(), at, length, TRUE);
            gtk_text_buffer_end_user_action(buffer());
        }
    }
    void select(int begin, int end) {
        GtkTextIter from;
        GtkTextIter to;
        gtk_text_buffer_get_iter_at_offset(buffer(), &from, begin);
        gtk_text_buffer_get_iter_at_offset(buffer(), &to, end);
        gtk_text_buffer_select_range(buffer(), &to, &from);
    }
    std::string selected() {
        GtkTextIter from;
        GtkTextIter to;
        if (gtk_text_buffer_get_selection_bounds(buffer(), &from, &to) == 0) return {};
        const Handle<char, g_free> chosen(gtk_text_buffer_get_text(buffer(), &from, &to, TRUE));
        return chosen.get();
    }
    void undo() { gtk_text_buffer_undo(buffer()); }
    void press(const char* key) { pressKey(m_window, key); }
    /// The text of a label that the bar shows.
    std::string barText(const char* style) {
        std::string found;
        const auto look = [&](auto& self, Gtk::Widget& widget) -> void {
            if (widget.has_css_class(style) && widget.get_visible())
                found = dynamic_cast<Gtk::Label&>(widget).get_text();
            for (auto* child = widget.get_first_child(); child != nullptr;
                 child = child->get_next_sibling())
                self(self, *child);
        };
        look(look, bar);
        return found;
    }
    std::string status() { return barText("find-status"); }
    /// What the focused field or button is called.
    std::string focused() {
        auto* widget = gtk_window_get_focus(m_window.gobj());
        if (widget == nullptr) return {};
        if (GTK_IS_TEXT(widget)) return gtk_text_get_placeholder_text(GTK_TEXT(widget));
        const char* tooltip = gtk_widget_get_tooltip_text(widget);
        return tooltip != nullptr ? tooltip : gtk_button_get_label(GTK_BUTTON(widget));
    }
    /// The words under the tag of a style.
    std::vector<std::string> tagged(const char* style) {
        std::vector<std::string> words;
        auto* tag = gtk_text_tag_table_lookup(gtk_text_buffer_get_tag_table(buffer()), style);
        GtkTextIter at;
        gtk_text_buffer_get_start_iter(buffer(), &at);
        while (tag != nullptr && (gtk_text_iter_starts_tag(&at, tag) != 0 ||
                                  gtk_text_iter_forward_to_tag_toggle(&at, tag) != 0)) {
            auto end = at;
            if (gtk_text_iter_forward_to_tag_toggle(&end, tag) == 0) break;
            const Handle<char, g_free> word(gtk_text_iter_get_slice(&at, &end));
            words.emplace_back(word.get());
            at = end;
        }
        return words;
    }

    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    ThemeManager themes{defaults, folder.path() / "Themes", [] { return false; }};
    EditorPane pane{preferences, themes};
    FindBar bar;
    EditingController editing{pane.textView(), preferences};
    FindController find{pane.textView(), bar, texts};

private:
    Gtk::Box m_box{Gtk::Orientation::VERTICAL};
    Gtk::Window m_window;
};

TEST_F(Editor, UndoesAPairAsOneStepAndTypingOverAsNone) {
    type("a\n(");
    EXPECT_EQ(text(), "a\n()");
    type("x)");
    EXPECT_EQ(text(), "a\n(x)");
    undo();
    EXPECT_EQ(text(), "a\n()") << "the letter; going over the bracket changed nothing";
    undo();
    EXPECT_EQ(text(), "a\n");
    gtk_text_buffer_redo(buffer());
    gtk_text_buffer_redo(buffer());
    EXPECT_EQ(text(), "a\n(x)");
}

TEST_F(Editor, ShowsVeryLongLinesInPiecesAndGivesThemOutWhole) {
    std::string line;
    for (int word = 0; word < 5000; ++word)
        line += "słowo word ";
    const Uuid id = Uuid::random();
    pane.open(id, "# one\n" + line);
    EXPECT_TRUE(pane.isInPieces());
    EXPECT_GT(gtk_text_buffer_get_line_count(buffer()), 10);
    EXPECT_EQ(text(), "# one\n" + line);

    select(20'000, 20'000);
    editing.cycleHeading();
    EXPECT_EQ(text(), "# one\n" + line) << "a piece is no line that could be a heading";
    type("x\n");
    EXPECT_EQ(text().size(), line.size() + 8);
    const std::string typed = text();
    pane.open(Uuid::random(), "short");
    EXPECT_FALSE(pane.isInPieces());
    pane.open(id, typed);
    undo();
    EXPECT_NE(text(), typed) << "what was typed can still be undone";

    select(0, gtk_text_buffer_get_char_count(buffer()));
    const std::string whole = text();
    g_signal_emit_by_name(pane.textView().gobj(), "cut-clipboard");
    EXPECT_EQ(text(), "");
    g_signal_emit_by_name(pane.textView().gobj(), "paste-clipboard");
    EXPECT_TRUE(turnUntil([this] { return !text().empty(); }));
    EXPECT_EQ(text(), whole);
    EXPECT_GT(gtk_text_buffer_get_line_count(buffer()), 10) << "pasted in pieces, too";
}

TEST_F(Editor, WrapsTheSelectionInOneStep) {
    type("one two");
    select(4, 7);
    type("„");
    EXPECT_EQ(text(), "one „two”");
    EXPECT_EQ(selected(), "two");
    undo();
    EXPECT_EQ(text(), "one two");
    select(4, 7);
    type("x");
    EXPECT_EQ(text(), "one x");
}

TEST_F(Editor, LeavesPairsAloneWhenTheyAreNotWanted) {
    preferences.setAutoCloseBrackets(false);
    type("(\"a");
    EXPECT_EQ(text(), "(\"a");
    preferences.setAutoCloseBrackets(true);
    gtk_text_buffer_set_text(buffer(), "```\n", -1);
    GtkTextIter end;
    gtk_text_buffer_get_end_iter(buffer(), &end);
    gtk_text_buffer_place_cursor(buffer(), &end);
    type("it'");
    EXPECT_EQ(text(), "```\nit'") << "in a code block";
}

TEST_F(Editor, UndoesACommandInOneStep) {
    type("- ala ma kota\n\ninny akapit");
    select(0, gtk_text_buffer_get_char_count(buffer()));
    editing.toggleEmphasis(editing::Emphasis::bold);
    EXPECT_EQ(text(), "- **ala ma kota**\n\n**inny akapit**");
    undo();
    EXPECT_EQ(text(), "- ala ma kota\n\ninny akapit");
    pane.setReadOnly(true);
    editing.cycleHeading();
    EXPECT_EQ(text(), "- ala ma kota\n\ninny akapit");
}

TEST_F(Editor, FindsGoesRoundAndReplacesAllInOneStep) {
    const std::string before = "kot i Kot, kotek\nżółty kot";
    gtk_text_buffer_set_text(buffer(), before.c_str(), -1);
    select(0, 3);
    find.open(true);
    ASSERT_TRUE(turnUntil([this] { return status() == "1 z 4"; })) << status();
    EXPECT_TRUE(turnUntil([this] { return tagged("search-current").size() == 1; }));
    EXPECT_EQ(tagged("search-match").size(), 3U);
    find.step(FindBar::Action::previous);
    EXPECT_EQ(status(), "4 z 4, od końca");
    find.step(FindBar::Action::next);
    EXPECT_EQ(status(), "1 z 4, od początku");
    preferences.setAppLanguage("en");
    find.relabel();
    EXPECT_EQ(status(), "1 of 4");
    find.step(FindBar::Action::replaceAll);
    EXPECT_EQ(text(), " i , ek\nżółty ");
    undo();
    EXPECT_EQ(text(), before);
}

TEST_F(Editor, SaysInTheFindBarThatOnlyAPartIsSearched) {
    find.open(false);
    EXPECT_EQ(barText("find-part"), "");
    bar.setPartial(true);
    preferences.setAppLanguage("en");
    find.relabel();
    EXPECT_EQ(barText("find-part"), "Only the beginning that is shown is searched");
    bar.setPartial(false);
    EXPECT_EQ(barText("find-part"), "");
}

TEST_F(Editor, SelectsTheMatchWhenTheBarIsClosed) {
    gtk_text_buffer_set_text(buffer(), "ala ma kota, kot", -1);
    select(7, 10);
    find.open(false);
    ASSERT_TRUE(turnUntil([this] { return status() == "1 z 2"; })) << status();
    find.step(FindBar::Action::next);
    bar.signalClosed().emit();
    EXPECT_FALSE(bar.isOpen());
    EXPECT_EQ(selected(), "kot");
    GtkTextIter cursor;
    gtk_text_buffer_get_iter_at_mark(buffer(), &cursor, gtk_text_buffer_get_insert(buffer()));
    EXPECT_EQ(gtk_text_iter_get_offset(&cursor), 16);
}

TEST_F(Editor, TabGoesThroughBothFieldsOfTheFindBarAndThenToEachButton) {
    find.open(true);
    ASSERT_TRUE(turnUntil([this] { return bar.get_height() > 0; }));
    const auto walk = [this](GtkDirectionType direction) {
        std::vector<std::string> names{focused()};
        while (names.size() < 20 && gtk_widget_child_focus(GTK_WIDGET(bar.gobj()), direction) != 0)
            names.push_back(focused());
        return names;
    };
    auto names = walk(GTK_DIR_TAB_FORWARD);
    const std::vector<std::string> expected{"Znajdź",
                                            "Zamień na",
                                            "Poprzednie (Shift+F3)",
                                            "Następne (F3)",
                                            "Uwzględniaj wielkość liter",
                                            "Całe słowa",
                                            "Wyrażenie regularne",
                                            "Zamknij wyszukiwanie (Esc)",
                                            "Zamień",
                                            "Zamień wszystkie"};
    EXPECT_EQ(names, expected);
    std::ranges::reverse(names);
    EXPECT_EQ(walk(GTK_DIR_TAB_BACKWARD), names);
}

TEST_F(Editor, CountsAgainAfterTheTextChanges) {
    gtk_text_buffer_set_text(buffer(), "a b a", -1);
    select(0, 1);
    find.open(false);
    ASSERT_TRUE(turnUntil([this] { return status() == "1 z 2"; }));
    select(5, 5);
    type(" a");
    EXPECT_TRUE(turnUntil([this] { return status() == "Wyniki: 3"; })) << status();
}

TEST_F(Editor, UnderlinesMistakesOfBothLanguagesButNotWhatIsBeingTyped) {
    if (!SpellDictionaries().areAny()) GTEST_SKIP() << "no dictionary is installed";
    SpellChecker spelling(pane.textView(), preferences,
                          [this](int line) { return editing.stateAt(line); });
    using Words = std::vector<std::string>;
    type("Piękny zamek and beautiful castlle `kodd`\n\nbłond");
    EXPECT_TRUE(turnUntil([this] { return tagged("misspelled-word") == Words{"castlle"}; }))
        << testing::PrintToString(tagged("misspelled-word"));
    type(" i");
    EXPECT_TRUE(turnUntil([this] {
        return tagged("misspelled-word") == (Words{"castlle", "błond"});
    }));
    GtkTextIter position;
    gtk_text_buffer_get_iter_at_offset(buffer(), &position, 29);
    const auto mistake = spelling.mistakeAt(position);
    ASSERT_TRUE(mistake.has_value());
    EXPECT_EQ(mistake->word, "castlle");
    EXPECT_NE(std::ranges::find(mistake->suggestions, "castle"), mistake->suggestions.end());
    spelling.ignore("castlle");
    EXPECT_TRUE(turnUntil([this] { return tagged("misspelled-word") == Words{"błond"}; }));
    preferences.setSpellChecking(false);
    EXPECT_EQ(tagged("misspelled-word"), Words{});
}

TEST_F(Editor, OpensTheMenuOfAMistakeBelowItsLine) {
    if (!SpellDictionaries().areAny()) GTEST_SKIP() << "no dictionary is installed";
    SpellChecker spelling(pane.textView(), preferences,
                          [this](int line) { return editing.stateAt(line); });
    EditorMenu menu(pane, pane.textView(), spelling, texts);
    type("A beautiful castlle on");
    ASSERT_TRUE(turnUntil([this] { return tagged("misspelled-word").size() == 1; }));
    select(15, 15);
    pane.textView().grab_focus();
    press("Menu");
    Gtk::PopoverMenu* popover = nullptr;
    ASSERT_TRUE(turnUntil([&] {
        popover = dynamic_cast<Gtk::PopoverMenu*>(pane.get_last_child());
        return popover != nullptr && popover->get_mapped();
    }));
    GtkTextIter word;
    gtk_text_buffer_get_iter_at_offset(buffer(), &word, 12);
    GdkRectangle place;
    gtk_text_view_get_iter_location(pane.textView().gobj(), &word, &place);
    int x = 0;
    int y = 0;
    pane.textView().buffer_to_window_coords(Gtk::TextWindowType::WIDGET, place.x,
                                            place.y + place.height, x, y);
    double left = 0;
    double bottom = 0;
    pane.textView().translate_coordinates(pane, x, y, left, bottom);
    Gdk::Rectangle pointed;
    ASSERT_TRUE(popover->get_pointing_to(pointed));
    EXPECT_EQ(pointed.get_x(), static_cast<int>(left));
    EXPECT_GE(pointed.get_y() + pointed.get_height(), static_cast<int>(bottom));
    EXPECT_LT(pointed.get_y(), static_cast<int>(bottom));
    popover->popdown();
}

TEST(SpellDictionaries, SuggestWhatTheHandMeantInTheLanguageOfTheLine) {
    SpellDictionaries dictionaries;
    if (!dictionaries.areAny()) GTEST_SKIP() << "no dictionary is installed";
    const auto suggested = [&](const std::string& word, const char* preferred) {
        return dictionaries.suggestions(word, {"is", "a", "in"}, 5, preferred);
    };
    EXPECT_EQ(suggested("wrod", "en").front(), "word");
    EXPECT_EQ(suggested("teh", "en").front(), "the");
    const auto words = suggested("Ths", "en");
    EXPECT_NE(std::ranges::find(words, "This"), words.end());
    EXPECT_EQ(dictionaries.suggestions("dizeń", {"każdy", "jest"}, 5, "en").front(), "dzień");
}

}  // namespace
}  // namespace corvel
