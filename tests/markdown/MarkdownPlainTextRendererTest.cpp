#include "markdown/MarkdownPlainTextRenderer.h"

#include <gtest/gtest.h>

#include <ctime>

namespace corvel {
namespace {

using Links = MarkdownPlainTextRenderer::Links;

std::string textOf(const std::string& markdown, Links links = Links::textOnly) {
    return MarkdownPlainTextRenderer(links).render(markdown);
}

std::string repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

TEST(MarkdownPlainTextRenderer, LeavesAddressesOutUnlessAskedFor) {
    EXPECT_EQ(textOf("[a](b)"), "a\n");
    EXPECT_EQ(textOf("[a](b)", Links::withAddress), "a (b)\n");
    EXPECT_EQ(textOf(""), "");
    EXPECT_EQ(textOf("<!-- nothing -->"), "");
}

TEST(MarkdownPlainTextRenderer, WritesTheWordsOfRawHtmlAsTheyAreSeen) {
    EXPECT_EQ(textOf("<table><tr><td>a<td>b</tr>\n<TR><th>c</th><th>d</th></TR></table>"),
              "a  b\nc  d\n");
    EXPECT_EQ(textOf("<ul><li>one<li>two</ul><p>three<br>four"), "one\ntwo\nthree\nfour\n");
    EXPECT_EQ(textOf("<script>if (a < b) alert()</SCRIPT>\n\n<style>p { }</style>\n\nend"),
              "end\n");
    EXPECT_EQ(textOf("a <b>bold</b> word, 1 < 2, H<sub>2</sub>O"), "a bold word, 1 < 2, H2O\n");
    EXPECT_EQ(textOf("<style>never ended"), "");
}

TEST(MarkdownPlainTextRenderer, ATaskIsDoneByItsOwnBoxAlone) {
    EXPECT_EQ(textOf("- [ ] see [x](a) or [X]\n- [x] then [ ]\n- [ ] open"),
              "[ ] see x or [X]\n[x] then [ ]\n[ ] open\n");
    EXPECT_EQ(textOf("text\r\rtext\r\n\r\n+   [ ] [x]\n+   [X] [ ]"),
              "text\n\ntext\n\n[ ] [x]\n[x] [ ]\n");
}

TEST(MarkdownPlainTextRenderer, ReferencesToNoCharacterLeaveText) {
    EXPECT_EQ(textOf("a &#xFFFE; b &#xFFFF; c"), "a \uFFFD b \uFFFD c\n");
}

// Depth and width of a hostile note must neither exhaust the stack nor blow up the text.
TEST(MarkdownPlainTextRenderer, NestingAndWideTablesCostNoMoreThanTheirText) {
    const std::clock_t start = std::clock();
    const std::string quotes = repeated(">", 2'000) + "a\n" + repeated("b\n", 2'000);
    EXPECT_LT(textOf(quotes).size(), 1'000'000U);
    const std::string items = repeated("- ", 5'000) + "a";
    EXPECT_LT(textOf(items).size(), 200'000U);
    const std::string table =
        "|a|b|\n|-|-|\n|" + std::string(200'000, 'x') + "|y|\n" + repeated("|a|b|\n", 2'000);
    EXPECT_LT(textOf(table).size(), 500'000U);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 10);
}

}  // namespace
}  // namespace corvel
