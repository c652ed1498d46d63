#include "app/assistant/ReplyBlocks.h"
#include "markdown/MarkdownParserService.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace corvel {
namespace {

std::string allEnded(ReplyBlocks& blocks) {
    std::string ended;
    for (auto part = blocks.takeEnded(10); !part.empty(); part = blocks.takeEnded(10))
        ended += part + "|";
    return ended;
}

TEST(ReplyBlocks, EndWhereTheNextOneIsSureToBegin) {
    ReplyBlocks blocks;
    blocks.append("First para");
    blocks.append("graph\n\nSec");
    EXPECT_EQ(allEnded(blocks), "") << "a line is read when it is complete";
    blocks.append("ond\n\n- item\n\n- item\n\n  more\n\n```\ncode\n\nmore\n");
    EXPECT_EQ(allEnded(blocks), "First paragraph\n\n|Second\n\n|- item\n\n- item\n\n  more\n\n|");
    EXPECT_EQ(blocks.open(), "```\ncode\n\nmore\n");
    blocks.append("```\n\nend\n");
    EXPECT_EQ(allEnded(blocks), "```\ncode\n\nmore\n```\n\n|");
    EXPECT_EQ(blocks.open(), "end\n");
}

TEST(ReplyBlocks, StayOpenInRawHtml) {
    ReplyBlocks blocks;
    blocks.append("<!-- a\n\nb\n\nc -->\n\nend\n");
    EXPECT_EQ(allEnded(blocks), "");
    blocks = {};
    blocks.append("<https://example.org>\n\nend\n");
    EXPECT_EQ(allEnded(blocks), "<https://example.org>\n\n|");
}

// Part by part the same page as at once, however the pieces fall.
TEST(ReplyBlocks, RenderedOneByOneMakeTheWholePage) {
    std::mt19937 random(11);
    const std::vector<std::string> lines{"text\n",
                                         "\n",
                                         "\n",
                                         "- item\n",
                                         "  more\n",
                                         "1. one\n",
                                         "> cite\n",
                                         "```\n",
                                         "    code\n",
                                         "# Head\n",
                                         "| a | b |\n| - | - |\n| c | d |\n",
                                         "---\n",
                                         "* x\n",
                                         "~~~ sh\n",
                                         "<div>\n",
                                         "**b**\n",
                                         "   ```\n",
                                         "10) ten\n"};
    for (int round = 0; round < 3000; ++round) {
        std::string whole;
        for (auto count = random() % 14; count > 0; --count)
            whole += lines[random() % lines.size()];
        ReplyBlocks blocks;
        std::string html;
        for (std::size_t at = 0; at < whole.size();) {
            const std::size_t size = 1 + random() % 9;
            blocks.append(std::string_view(whole).substr(at, size));
            at += size;
            html += MarkdownParserService::renderBody(blocks.takeEnded(random() % 40));
        }
        for (auto part = blocks.takeEnded(1); !part.empty(); part = blocks.takeEnded(1))
            html += MarkdownParserService::renderBody(part);
        html += MarkdownParserService::renderBody(std::string(blocks.open()));
        ASSERT_EQ(html, MarkdownParserService::renderBody(whole)) << whole;
    }
}

}  // namespace
}  // namespace corvel
