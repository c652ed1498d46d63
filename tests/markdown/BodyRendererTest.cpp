#include "markdown/MarkdownArena.h"
#include "markdown/MarkdownParserService.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <cstring>

namespace corvel {
namespace {

std::string body(std::string_view markdown) {
    return MarkdownParserService::renderBody(markdown);
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::size_t countOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(BodyRenderer, NothingGivesNothing) {
    EXPECT_EQ(body(""), "");
    EXPECT_EQ(body("\n \n"), "");
}

TEST(BodyRenderer, IsUtf8WhateverCharacterReferencesSay) {
    const std::string html = body("&#xFFFE; &#65535; &#1; &#xD800; &#0; &#x1FFFE;");
    EXPECT_TRUE(g_utf8_validate_len(html.data(), html.size(), nullptr)) << html;
}

TEST(BodyRenderer, AnImageIsFollowedByItsWidth) {
    EXPECT_EQ(body("![a](b.png){width=50%} c"),
              "<p><img src=\"b.png\" alt=\"a\">{width=50%} c</p>\n");
}

TEST(BodyRenderer, ALinkedImageKeepsTheRestOfTheLinkUnlinked) {
    EXPECT_EQ(body("[![a](b) http://c.d](e) http://f.g"),
              "<p><a href=\"e\"><img src=\"b\" alt=\"a\"> http://c.d</a> "
              "<a href=\"http://f.g\">http://f.g</a></p>\n");
}

TEST(BodyRenderer, BadBytesComeOutAsValidText) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(body("a\0b"sv), "<p>a\uFFFDb</p>\n");
    EXPECT_EQ(body("a\xFF\0 \xC5"sv), "<p>a\uFFFD\uFFFD \uFFFD</p>\n");
    for (const std::string& text : {repeated("\xF0\x9F", 500), std::string(1000, '\x80')}) {
        EXPECT_TRUE(g_utf8_validate(body(text).c_str(), -1, nullptr));
    }
}

TEST(BodyRenderer, DeepNestingNeedsNoStack) {
    EXPECT_EQ(countOf(body(repeated("> ", 50'000) + "x"), "<blockquote>"), 50'000U);
    EXPECT_EQ(countOf(body(repeated("- ", 50'000) + "x"), "<li>"), 50'000U);
    EXPECT_EQ(countOf(body(repeated("*a ", 20'000) + repeated("b*", 20'000)), "<em>"), 20'000U);
    EXPECT_EQ(countOf(body(repeated("![", 10'000) + repeated("](c)", 10'000)), "<img"), 1U);
}

TEST(BodyRenderer, ALineOfAMegabyteComesOutWhole) {
    const std::string line(1 << 20, 'x');
    EXPECT_TRUE(body(line) == "<p>" + line + "</p>\n");
    EXPECT_TRUE(body("`" + line + "`") == "<p><code>" + line + "</code></p>\n");
}

TEST(MarkdownArena, KeepsWhatGrowsAndZeroesWhatIsNew) {
    const MarkdownArena arena;
    cmark_mem* memory = MarkdownArena::allocator();
    auto* first = static_cast<char*>(memory->calloc(1, 10));
    auto* other = static_cast<char*>(memory->calloc(1, 10));
    std::memset(first, 'a', 10);
    std::memset(other, 'b', 10);
    for (std::size_t size = 20; size < 2'000'000; size *= 3) {
        first = static_cast<char*>(memory->realloc(first, size));
        EXPECT_EQ(std::string_view(first, 10), "aaaaaaaaaa");
        const auto* fresh = static_cast<char*>(memory->calloc(1, size));
        EXPECT_EQ(std::string_view(fresh, size).find_first_not_of('\0'), std::string_view::npos);
    }
    memory->free(first);
    EXPECT_EQ(std::string_view(other, 10), "bbbbbbbbbb");
}

}  // namespace
}  // namespace corvel
