#include "app/editing/BlockCommands.h"
#include "app/editing/EmphasisCommand.h"
#include "support/MarkedText.h"

#include <gtest/gtest.h>

namespace corvel::editing {
namespace {

std::string toggled(const std::string& start, Emphasis kind) {
    const auto excerpt = marked(start);
    return after(excerpt, toggledEmphasis(excerpt.text, excerpt.selection, kind));
}
std::string bold(const std::string& start) {
    return toggled(start, Emphasis::bold);
}
std::string italic(const std::string& start) {
    return toggled(start, Emphasis::italic);
}

std::string heading(const std::string& start) {
    const auto excerpt = marked(start);
    return after(excerpt, cycledHeading(excerpt.text, excerpt.selection));
}
std::string tasks(const std::string& start) {
    const auto excerpt = marked(start);
    return after(excerpt, toggledTasks(excerpt.text, excerpt.selection));
}
std::string code(const std::string& start, bool isInFence = false) {
    const auto excerpt = marked(start);
    return after(excerpt, toggledCodeBlock(excerpt.text, excerpt.selection, isInFence));
}
std::string link(const std::string& start, const std::string& clipboard = {}) {
    const auto excerpt = marked(start);
    return after(excerpt, toggledLink(excerpt.text, excerpt.selection, clipboard));
}

TEST(Emphasis, IsPutOnAndTakenOffAgain) {
    EXPECT_EQ(bold("a ^word| b"), "a **^word|** b");
    EXPECT_EQ(bold("a **^word|** b"), "a ^word| b");
    EXPECT_EQ(bold("a |**word**^ b"), "a |word^ b") << "the marks were selected too";
    EXPECT_EQ(bold("a *^*word*|* b"), "a ^word| b") << "half of the marks";
    EXPECT_EQ(bold("a __^word|__ b"), "a ^word| b");
    EXPECT_EQ(italic("**^word|**"), "***^word|***");
    EXPECT_EQ(italic("***^word|***"), "**^word|**");
    EXPECT_EQ(bold("***^word|***"), "*^word|*");
    EXPECT_EQ(toggled("^no|", Emphasis::strikethrough), "~~^no|~~");
    EXPECT_EQ(toggled("~~^no|~~", Emphasis::strikethrough), "^no|");
}

TEST(Emphasis, TakesTheWordAtTheCursorOrAPairToTypeInto) {
    EXPECT_EQ(bold("zażó|łć gęślą"), "**zażó|łć** gęślą");
    EXPECT_EQ(bold("**zażó|łć**"), "zażó|łć");
    EXPECT_EQ(bold("word|"), "**word|**");
    EXPECT_EQ(bold("**two wo|rds**"), "two wo|rds");
    EXPECT_EQ(bold("a | b"), "a **|** b");
    EXPECT_EQ(bold("a **|** b"), "a | b");
}

TEST(Emphasis, KeepsBlanksAndBlockMarksOutside) {
    EXPECT_EQ(bold("a^ word | b"), "a^ **word** | b");
    EXPECT_EQ(bold("^- [ ] task\n\n> quote\n## head|"),
              "^- [ ] **task**\n\n> **quote**\n## **head|**");
    EXPECT_EQ(bold("^- **a**\n- **b**|"), "^- a\n- b|") << "all lines have it";
    EXPECT_EQ(bold("^- **a**\n- b|"), "^- **a**\n- **b|**") << "only one line lacked it";
    EXPECT_EQ(bold("a ^  | b"), "none");
}

TEST(Emphasis, MergesAndSplitsMarkedRuns) {
    EXPECT_EQ(bold("^a **b** c|"), "**^a b c|**");
    EXPECT_EQ(bold("**a ^b| c**"), "**a** ^b| **c**");
    EXPECT_EQ(bold("**^a| b**"), "^a| **b**");
    EXPECT_EQ(italic("*a **^b|***"), "*a* **^b|**");
    EXPECT_EQ(bold("`**x**` ^y|"), "`**x**` **^y|**") << "code is no emphasis";
    EXPECT_EQ(bold("a ^b **c| d**"), "a **^b c| d**");
}

TEST(Emphasis, OfARunThatIsMarkedInPartBeginsWhereThatRunBegan) {
    EXPECT_EQ(italic("*a^b* cd|"), "*a^b cd|*");
    EXPECT_EQ(bold("**a^b** c **d|e** f"), "**a^b c d|e** f");
    EXPECT_EQ(italic("^ab *c|d*"), "*^ab c|d*");
}

TEST(BlockCommands, HeadingsGoThroughTheirLevels) {
    EXPECT_EQ(heading("Ti|tle"), "# Ti|tle");
    EXPECT_EQ(heading("# Ti|tle"), "## Ti|tle");
    EXPECT_EQ(heading("###### Ti|tle"), "Ti|tle");
    EXPECT_EQ(heading("|"), "# |");
    EXPECT_EQ(heading("^## a\n\nb|"), "^### a\n\n### b|");
    EXPECT_EQ(heading("> #|tag"), "> # #|tag");
}

// Where marks are exchanged or taken away the cursor stays with the words, the end of a selection
// with what is before it.
TEST(BlockCommands, ACursorWithinMarksGoesToTheirEdge) {
    EXPECT_EQ(heading("#|# Title"), "### |Title");
    EXPECT_EQ(heading("|## Title"), "|### Title");
    EXPECT_EQ(heading("^# a\n#| b"), "^## a\n|## b");
    EXPECT_EQ(heading("#^# a\n## b|"), "### ^a\n### b|");
    EXPECT_EQ(tasks("- [|x] milk"), "|milk");
    EXPECT_EQ(tasks("- [ ] a\n- [^ ] b|\nc"), "- [ ] a\n^b|\nc");
}

TEST(BlockCommands, TasksAreMadeAndUnmade) {
    EXPECT_EQ(tasks("buy| milk"), "- [ ] buy| milk");
    EXPECT_EQ(tasks("- [x] buy| milk"), "buy| milk");
    EXPECT_EQ(tasks("^a\n  - b\n\n1. c|"), "- [ ] ^a\n  - [ ] b\n\n1. [ ] c|");
    EXPECT_EQ(tasks("1. [ ] c|"), "1. c|");
    EXPECT_EQ(tasks("|"), "- [ ] |");
    EXPECT_EQ(tasks("- |"), "- [ ] |");
}

TEST(BlockCommands, CodeIsFencedByMoreMarksThanItHolds) {
    EXPECT_EQ(code("a\nb|\nc"), "a\n```\nb|\n```\nc");
    EXPECT_EQ(code("^a\nb\n|c"), "```\n^a\nb\n|```\nc");
    EXPECT_EQ(code("|"), "```\n|\n```");
    EXPECT_EQ(code("^```\nx\n|"), "^x\n|") << "its fences were selected";
    EXPECT_EQ(code("a ^````| b"), "`````\na ^````| b\n`````");
    EXPECT_EQ(code("t\n```\na\nb|\n```\nu", true), "t\na\nb|\nu");
    EXPECT_EQ(code("t\n```\na|", true), "t\na|");
    EXPECT_EQ(code("```\na\n```|", true), "a|") << "at its last fence";
}

TEST(BlockCommands, AnEmptyCodeBlockGoesWhole) {
    EXPECT_EQ(code("```|\n```"), "|");
    EXPECT_EQ(code("a\n```|\n```"), "a|");
    EXPECT_EQ(code("```|\n```\nb"), "|b");
}

TEST(BlockCommands, LinksTakeWordsOrAddress) {
    EXPECT_EQ(link("a ^nice word| b"), "a [nice word](|) b");
    EXPECT_EQ(link("wo|rd"), "[word](|)");
    EXPECT_EQ(link("a | b"), "a [|]() b");
    EXPECT_EQ(link("^https://a.example/x|"), "[|](https://a.example/x)");
    EXPECT_EQ(link("wo|rd", "https://a.example/(x)\n"), "[word](<https://a.example/(x)>)|");
    EXPECT_EQ(link("a | b", "https://a.example"), "a [|](https://a.example) b");
    EXPECT_EQ(link("^word|", "not an address"), "[word](|)");
    EXPECT_EQ(link("^a [b]|"), "[a \\[b\\]](|)");
    EXPECT_EQ(link("x [wo|rd](https://a.example) y"), "x ^word| y");
    EXPECT_EQ(link("^one\n\ntwo|"), "none");
}

}  // namespace
}  // namespace corvel::editing
