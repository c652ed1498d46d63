#include "app/editing/ListEditing.h"
#include "support/MarkedText.h"

#include <gtest/gtest.h>

namespace corvel::editing {
namespace {

std::string enter(const std::string& start) {
    const auto excerpt = marked(start);
    return after(excerpt, lineEnded(excerpt.text, excerpt.selection));
}

std::string tab(const std::string& start, Depth depth = Depth::deeper) {
    const auto excerpt = marked(start);
    return after(excerpt, indented(excerpt.text, excerpt.selection, depth));
}

std::string shiftTab(const std::string& start) {
    return tab(start, Depth::shallower);
}

TEST(ListEditing, GoesOnWithListsTasksAndQuotations) {
    EXPECT_EQ(enter("- one|"), "- one\n- |");
    EXPECT_EQ(enter("* on|e"), "* on\n* |e");
    EXPECT_EQ(enter("- one| two"), "- one\n- |two");
    EXPECT_EQ(enter("  - [x] done|"), "  - [x] done\n  - [ ] |");
    EXPECT_EQ(enter("> quoted|"), "> quoted\n> |");
    EXPECT_EQ(enter("> - a|"), "> - a\n> - |");
    EXPECT_EQ(enter("- a ^b| c"), "- a \n- |c");
    EXPECT_EQ(enter("plain|"), "none");
    EXPECT_EQ(enter("|- one"), "none") << "the item moves down as it is";
    EXPECT_EQ(enter("-dash|"), "none");
    EXPECT_EQ(enter("[x] no list|"), "none");
}

TEST(ListEditing, CountsOnInOrderedLists) {
    EXPECT_EQ(enter("9. nine|"), "9. nine\n10. |");
    EXPECT_EQ(enter("1) a|\n2) b\n   - c\n\n3) d\n\ntext\n4) e"),
              "1) a\n2) |\n3) b\n   - c\n\n4) d\n\ntext\n4) e");
    EXPECT_EQ(enter("1. a|\n1. b"), "1. a\n1. |\n1. b") << "numbered by the page";
    EXPECT_EQ(enter("1. a|\n5. b"), "1. a\n2. |\n5. b") << "not of one count";
    EXPECT_EQ(enter("1. a^b\n2. c|d\n3. e"), "1. a\n2. |d\n3. e") << "one went, one came";
}

TEST(ListEditing, EndsOnAnEmptyItem) {
    EXPECT_EQ(enter("- one\n- |"), "- one\n|");
    EXPECT_EQ(enter("1. one\n2. |"), "1. one\n|");
    EXPECT_EQ(enter("- [ ] |"), "|");
    EXPECT_EQ(enter("> a\n> |\nb"), "> a\n|\nb");
    EXPECT_EQ(enter("> - |"), "> |");
    EXPECT_EQ(enter("- a\n  - |"), "- a\n- |") << "a nested list ends one level at a time";
}

TEST(ListEditing, MovesItemsBelowTheOneBeforeAndOutAgain) {
    EXPECT_EQ(tab("- a\n- b|"), "- a\n  - b|");
    EXPECT_EQ(tab("1. a\n2. b|"), "1. a\n   1. b|") << "a list of its own begins at one";
    EXPECT_EQ(tab("- a\n  - b\n- ^c\n  - d|\n- e"), "- a\n  - b\n  - ^c\n    - d|\n- e");
    EXPECT_EQ(tab("- a\n  - b|"), "- a\n  - b|") << "no deeper than below its parent";
    EXPECT_EQ(tab("- a|"), "- a|");
    EXPECT_EQ(tab("text|"), "none");
    EXPECT_EQ(tab("> - a\n> - b|"), "> - a\n>   - b|");
    EXPECT_EQ(shiftTab("- a\n  - b|"), "- a\n- b|");
    EXPECT_EQ(shiftTab("1. a\n   1. b|"), "1. a\n2. b|");
    EXPECT_EQ(shiftTab("- a\n  - b\n    - |"), "- a\n  - b\n  - |");
    EXPECT_EQ(shiftTab("- a|"), "- a|");
    EXPECT_EQ(shiftTab("- a\n  - ^b\nword\n c|"), "- a\n- ^b\nword\nc|") << "no word goes";
    EXPECT_EQ(shiftTab("- a\n  - ^b\n  - c\n|- d"), "- a\n- ^b\n- c\n|- d");
}

}  // namespace
}  // namespace corvel::editing
