#include "app/editing/TypingPairs.h"
#include "support/MarkedText.h"

#include <gtest/gtest.h>

namespace corvel::editing {
namespace {

/// Types each character of `keys`, as the editor does.
std::string typing(const std::string& start, const std::string& keys, Place place = Place::text) {
    auto [text, selection] = marked(start);
    for (std::size_t i = 0; i < keys.size();) {
        std::size_t length = 1;
        while (i + length < keys.size() &&
               (static_cast<unsigned char>(keys[i + length]) & 0xC0U) == 0x80U)
            ++length;
        const auto key = keys.substr(i, length);
        i += length;
        auto edit = typed(text, selection, key, place);
        if (!edit) {
            edit = TextEdit{{selection.begin(), selection.end()},
                            key,
                            Selection::at(selection.begin() + key.size())};
        }
        text = edit->appliedTo(text);
        selection = edit->selection;
    }
    return drawn(text, selection);
}

std::string erasing(const std::string& start) {
    const auto excerpt = marked(start);
    return after(excerpt, erased(excerpt.text, excerpt.selection));
}

TEST(TypingPairs, ClosesWhatIsOpenedAndTypesOverIt) {
    EXPECT_EQ(typing("|", "("), "(|)");
    EXPECT_EQ(typing("|", "(a [b]) c"), "(a [b]) c|");
    EXPECT_EQ(typing("|", "\"cytat\" i `kod`."), "\"cytat\" i `kod`.|");
    EXPECT_EQ(typing("|", "„cytat” i „"), "„cytat” i „|”");
    EXPECT_EQ(typing("- |", "[ ] task"), "- [ ] task|");
    EXPECT_EQ(typing("|", "[a](b)"), "[a](b)|");
    EXPECT_EQ(typing("|", "**gruby** tekst"), "**gruby** tekst|");
    EXPECT_EQ(typing("|", "~~nie~~"), "~~nie~~|");
}

TEST(TypingPairs, LeavesAloneWhatNoPairIsMeantBy) {
    EXPECT_EQ(typing("|", "don't"), "don't|");
    EXPECT_EQ(typing("|", "5\" screen"), "5\" screen|");
    EXPECT_EQ(typing("|word", "("), "(|word") << "a bracket put before a word";
    EXPECT_EQ(typing("\\|", "("), "\\(|") << "an escaped mark";
    EXPECT_EQ(typing("|", "***"), "***|") << "a rule";
    EXPECT_EQ(typing("|", "```"), "```|") << "a fence";
    EXPECT_EQ(typing("|", "~~~"), "~~~|");
    EXPECT_EQ(typing("|", "* item * b"), "* item * b|");
    EXPECT_EQ(typing("|", "snake__case"), "snake__case|");
    EXPECT_EQ(typing("a|)", ")"), "a)|)") << "the bracket that stands there closes nothing";
    EXPECT_EQ(typing("((a|)", ")"), "((a)|)") << "one of two open brackets is closed";
}

TEST(TypingPairs, ClosesBracketsButNoQuotesInCode) {
    EXPECT_EQ(typing("|", "f(\"x\")", Place::code), "f(\"x\")|");
    EXPECT_EQ(typing("|", "it'", Place::code), "it'|");
    EXPECT_EQ(typing("|", "a ** b", Place::code), "a ** b|");
    EXPECT_EQ(typing("`code|`", "`", Place::code), "`code`|");
}

TEST(TypingPairs, WrapsTheSelectionAndKeepsIt) {
    EXPECT_EQ(typing("a ^word| b", "("), "a (^word|) b");
    EXPECT_EQ(typing("a |word^ b", "**"), "a **|word^** b");
    EXPECT_EQ(typing("^zażółć|", "„"), "„^zażółć|”");
    EXPECT_EQ(typing("^one\ntwo|", "*"), "*|") << "emphasis ends with its paragraph";
    EXPECT_EQ(typing("^one\ntwo|", "("), "(^one\ntwo|)");
    EXPECT_EQ(typing("^word|", "x"), "x|");
}

TEST(TypingPairs, ErasesBothOfAnEmptyPair) {
    EXPECT_EQ(erasing("a (|) b"), "a | b");
    EXPECT_EQ(erasing("„|”"), "|");
    EXPECT_EQ(erasing("`|`"), "|");
    EXPECT_EQ(erasing("**|**"), "*|");
    EXPECT_EQ(erasing("(a|)"), "none");
    EXPECT_EQ(erasing("****|"), "none");
}

}  // namespace
}  // namespace corvel::editing
