#include "markdown/BodyBlocks.h"
#include "markdown/MarkdownParserService.h"
#include "ui/PageTest.h"

#include <array>
#include <random>
#include <string>
#include <vector>

namespace corvel {
namespace {

constexpr std::array kOrdinary{
    "# Heading & more",
    "Plain *words* with `code` and [a link](https://example.org/?a=1&b=2).",
    "- one\n- two\n  - [x] nested **task**\n\n    and a paragraph",
    "1. first\n2. second\n\n   > quoted\n   > ```\n   > code\n   > ```",
    "> quote\n>\n> > deeper ~~gone~~",
    "| a | b |\n|---|---|\n| 1 | https://example.org |\n| 2 |",
    "| a |\n|---|",
    "```cpp\n\nint `x` = ${1};\n```",
    "---",
    "![picture](attachment://x) text",
    "line one\nline two  \nline three &amp; &nbsp; \\<b>",
    "***deep** nesting* _of_ **marks _in_ marks**",
};

// What moves, closes or swallows the elements around it, and what is no element at all.
constexpr std::array kHostile{
    "<div>\n<p>well formed</p>\n</div>",
    "press <kbd>Ctrl</kbd> and<br>go on",
    "<div>",
    "</div>",
    "<b>open",
    "text <i>open",
    "</p>",
    "<p>raw",
    "<table><tr><td>",
    "</table>",
    "<tr><td>cell",
    "<!-- open",
    "a -->",
    "<!-- whole -->",
    "<form>",
    "</form>",
    "<form><b>x</form>",
    "<a href=x>open",
    "</a>",
    "<select><option>",
    "<textarea>",
    "</textarea>",
    "<template>",
    "</template>",
    "<svg><title>",
    "</svg>",
    "<math><mi>",
    "<style>p{}",
    "</style>",
    "<script>1",
    "</script>",
    "<button>",
    "<li>item",
    "</ul>",
    "<h1>",
    "<ul>",
    "</br>",
    "<br>",
    "<hr>",
    "<image src=x>",
    "<iframe>",
    "</iframe>",
    "<title>",
    "</title>",
    "<plaintext>",
    "<body class=x>",
    "<frameset>",
    "<?php",
    "<![CDATA[x]]>",
    "<nobr>a<nobr>b",
    "<details><summary>",
    "</details>",
    "<pre>\n\nx",
    "</pre>",
    "<span>\n\nx\n\n</span>",
    "<p><div></p>",
    "<em><p>x</em>",
    "![a](<x\"><b>>)",
    "![a](x){width=1\"><table>}",
    "`````<b>\n\nx\n`````",
    "```\"><b>\nx\n```",
    "<b><i>x</b></i>",
    "<p>a<table>b</table>",
    "<div\n>x",
    "<div class='a>b'>",
    "<caption>x",
};

/// Bodies that follow from a seed; each edit changes blocks here and there.
class Notes {
public:
    Notes(unsigned seed, bool isHostile) : m_engine(seed), m_isHostile(isHostile) {
        for (int i = 0; i < 24; ++i)
            m_blocks.push_back(block());
    }

    void edit() {
        const std::size_t place = m_engine() % m_blocks.size();
        const auto at = m_blocks.begin() + static_cast<std::ptrdiff_t>(place);
        switch (m_engine() % 5) {
            case 0:
                m_blocks.insert(at, block());
                break;
            case 1:
                if (m_blocks.size() > 4) m_blocks.erase(at);
                break;
            case 2:
                at->insert(m_engine() % (at->size() + 1), 1,
                           "x>`*\n&\"<"[m_engine() % (m_isHostile ? 8U : 6U)]);
                break;
            case 3:
                at->erase(m_engine() % at->size(), 1);
                if (at->empty()) *at = "x";
                break;
            default:
                *at = block();
        }
    }

    std::string body() const {
        std::string text;
        for (const auto& part : m_blocks)
            text += part + "\n\n";
        return MarkdownParserService().postProcessImages(MarkdownParserService::renderBody(text));
    }

private:
    std::string block() {
        const bool isHostile = m_isHostile && m_engine() % 12 == 0;
        return isHostile ? kHostile[m_engine() % kHostile.size()]
                         : kOrdinary[m_engine() % kOrdinary.size()];
    }

    std::mt19937 m_engine;
    bool m_isHostile;
    std::vector<std::string> m_blocks;
};

class ChangedBlocksTest : public PageTest {
protected:
    /// Whether the page has the very nodes that `body` makes when it is shown whole.
    bool isLike(const std::string& body) {
        std::string literal = PreviewPage::updateScript(body);
        literal = literal.substr(std::string("updateContent(").size());
        literal.resize(literal.size() - 2);
        return ask("(function() { var shown = document.getElementById('content');"
                   "var whole = shown.cloneNode(false); whole.innerHTML = " +
                   literal + "; return shown.isEqualNode(whole); })()") == "true";
    }

    /// Edits a note `rounds` times; answers how many edits needed no whole push.
    int follow(unsigned seed, bool isHostile, int rounds) {
        Notes notes(seed, isHostile);
        std::string before = notes.body();
        ask(PreviewPage::updateScript(before) + "1");
        int partial = 0;
        for (int round = 0; round < rounds; ++round) {
            notes.edit();
            const std::string body = notes.body();
            const auto run = changedBlocks(before, BodyBlocks(before), body, BodyBlocks(body));
            const auto script =
                run ? PreviewPage::replaceScript(
                          run->firstNode, run->endNode,
                          std::string_view(body).substr(run->begin, run->end - run->begin))
                    : PreviewPage::updateScript(body);
            EXPECT_EQ(ask(script + "1"), "1");
            if (run) ++partial;
            if (!isLike(body)) {
                ADD_FAILURE() << "seed " << seed << ", round " << round << "\n--- before\n"
                              << before << "\n--- after\n"
                              << body;
                return partial;
            }
            before = body;
        }
        return partial;
    }
};

TEST_F(ChangedBlocksTest, GivesThePageThatTheWholeBodyGives) {
    show("<p>ready</p>");
    constexpr int kRounds = 150;
    int ordinary = 0;
    for (unsigned seed = 1; seed <= 4; ++seed)
        ordinary += follow(seed, false, kRounds);
    EXPECT_GT(ordinary, 4 * kRounds * 9 / 10) << "whole pushes are for what cannot be trusted";
}

TEST_F(ChangedBlocksTest, GivesItAlsoAmongHtmlThatSwallowsItsNeighbours) {
    show("<p>ready</p>");
    constexpr int kRounds = 60;
    int partial = 0;
    for (unsigned seed = 1; seed <= 10; ++seed)
        partial += follow(seed, true, kRounds);
    EXPECT_GT(partial, 0);
}

TEST_F(ChangedBlocksTest, KeepsUntouchedElementsOfALongBody) {
    std::string body;
    while (body.size() < PreviewCoordinator::kLongBody)
        body += "<p>words and words</p>\n";
    show(body);
    ask("document.getElementById('content').firstChild.wasHere = 1");
    body.insert(body.size() / 2 / 23 * 23 + 3, "more `\\${} ");
    show(body);
    EXPECT_EQ(ask("document.getElementById('content').firstChild.wasHere"), "1");
    EXPECT_TRUE(isLike(body));
    show(body.substr(23 * 2000));
    EXPECT_TRUE(isLike(body.substr(23 * 2000)));
}

}  // namespace
}  // namespace corvel
