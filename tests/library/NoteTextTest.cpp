#include "library/NoteText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <memory>
#include <random>
#include <set>

namespace corvel {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

icu::UnicodeString wide(const std::string& text) {
    return icu::UnicodeString::fromUTF8(text);
}

class Pattern {
public:
    explicit Pattern(const char* expression) {
        UErrorCode status = U_ZERO_ERROR;
        m_matcher = std::make_unique<icu::RegexMatcher>(wide(expression), 0, status);
        EXPECT_TRUE(U_SUCCESS(status));
    }
    icu::RegexMatcher& over(const icu::UnicodeString& text) {
        m_matcher->reset(text);
        return *m_matcher;
    }

private:
    std::unique_ptr<icu::RegexMatcher> m_matcher;
};

/// What tags are, by regular expressions.
std::vector<std::string> tagsByRegex(const std::string& content) {
    static Pattern fences("```[\\s\\S]*?```");
    static Pattern spans("`[^`]+`");
    static Pattern tags("(?:^|\\s)#([\\w]+(?:/[\\w]+)*)");
    UErrorCode status = U_ZERO_ERROR;
    const auto source = wide(content);
    const auto unfenced = fences.over(source).replaceAll(icu::UnicodeString(), status);
    const auto text = spans.over(unfenced).replaceAll(icu::UnicodeString(), status);
    std::set<std::string> found;
    auto& matcher = tags.over(text);
    while (matcher.find(status) != 0) {
        std::string path;
        matcher.group(1, status).toUTF8String(path);
        for (std::size_t slash = path.find('/'); slash != path.npos;
             slash = path.find('/', slash + 1)) {
            found.insert(path.substr(0, slash));
        }
        found.insert(path);
    }
    return {found.begin(), found.end()};
}

}  // namespace

TEST(TitleFromContent, TakesTheFirstLevelOneHeading) {
    EXPECT_EQ(titleFromContent("## Plan\ntext\n# Title"), "Title");
    EXPECT_EQ(titleFromContent(" \t # Title \t "), "Title");
    EXPECT_EQ(titleFromContent("#  Title"), " Title");
    EXPECT_EQ(titleFromContent("# \nnext"),
              "#");  // trimmed, there is no space left behind the mark
    EXPECT_EQ(titleFromContent("# " + std::string(300, 'x')), std::string(300, 'x'));
    for (const char* newline : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"}) {
        EXPECT_EQ(titleFromContent(std::string("a") + newline + "# B" + newline + "c"), "B");
    }
}

TEST(TitleFromContent, ElseTakesTheFirstLineOfText) {
    EXPECT_EQ(titleFromContent("\n \t\n## Plan\n"), "## Plan");
    EXPECT_EQ(titleFromContent(" \n\t"), "Untitled");
    EXPECT_EQ(titleFromContent(""), "Untitled");
    std::string line;
    for (int i = 0; i < 120; ++i)
        line += "e\u0301";
    EXPECT_EQ(titleFromContent(line), line.substr(0, 300));
}

TEST(TagPathsIn, FindsPathsWithTheirPrefixes) {
    EXPECT_THAT(tagPathsIn("#a/b/c and #a/ż #1 #a//x"),
                ElementsAre("1", "a", "a/b", "a/b/c", "a/ż"));
    EXPECT_THAT(tagPathsIn("text#no http://x/y#no `#no` ```\n#no\n```"), IsEmpty());
    EXPECT_THAT(tagPathsIn("#Work #work"), ElementsAre("Work", "work"));
    // What stands around code is joined.
    EXPECT_THAT(tagPathsIn("x `y`#z #a`c`b"), ElementsAre("ab", "z"));
}

TEST(TagPathsIn, EqualsTheRegularExpressions) {
    const std::vector<std::string> alphabet = {
        "`",      "`", "`",  "```", "#",  "#",      "#a",     "a",      "/",
        "ą",      " ", "\n", "~",   "b",  "_",      "\u0301", "\u00A0", "\u2028",
        "\u200D", "٣", "²",  "😀",   "\t", "\u0085", "\u200B", "ⓐ",      "-"};
    std::mt19937 random(5);
    for (int round = 0; round < 30000; ++round) {
        std::string text;
        for (std::size_t i = random() % 24; i > 0; --i)
            text += alphabet[random() % alphabet.size()];
        ASSERT_EQ(tagPathsIn(text), tagsByRegex(text)) << text;
    }
}

TEST(TagPathsIn, EqualsTheRegularExpressionsForEveryCharacter) {
    for (UChar32 c = 1; c < 0x20000; ++c) {
        if (U_IS_SURROGATE(c)) continue;
        std::string mark;
        icu::UnicodeString(c).toUTF8String(mark);
        const auto text = "x" + mark + "#a #b" + mark + "c/" + mark;
        ASSERT_EQ(tagPathsIn(text), tagsByRegex(text)) << std::hex << c;
    }
}

TEST(TagPathsIn, StaysSmallAndLinearForHostileText) {
    std::string deep = "#";
    std::string ticks;
    std::string many;
    for (int i = 0; i < 300'000; ++i) {
        deep += "a/";
        ticks += i % 2 == 0 ? "`` " : "```` x";
        many += " #t" + std::to_string(i);
    }
    EXPECT_EQ(tagPathsIn(deep).size(), 64U);
    EXPECT_EQ(tagPathsIn(many).size(), 10'000U);
    EXPECT_THAT(tagPathsIn(ticks), IsEmpty());
    EXPECT_THAT(tagPathsIn("#" + std::string(5000, 'a')), IsEmpty());
}

TEST(ExcerptOf, ShowsTheTextUnderTheTitle) {
    EXPECT_EQ(
        excerptOf("# Plan\n\nZakres i **terminy**. Szczegóły w\n[kalendarzu](https://e.org)."),
        "Zakres i terminy. Szczegóły w kalendarzu.");
    EXPECT_EQ(excerptOf("# Lektury\n- [ ] Lalka\n- [x] Solaris"), "[ ] Lalka [x] Solaris");
    EXPECT_EQ(excerptOf("Obecni\n> 1. *Kalendarz*\n> > ## snake_case __b__ ~~c~~"),
              "1. Kalendarz snake_case b c");
    EXPECT_EQ(excerptOf("T\n| a | b |\n|---|---|\n| 2 * 3 | ~5 |\n***\n```cpp\nint x;\n```"),
              "a b 2 * 3 ~5 int x;");
    EXPECT_EQ(excerptOf("T\n![Widok](a.png) <b>x</b> a < b \\*y\\* #praca/plan"),
              "Widok x a < b *y* #praca/plan");
    EXPECT_EQ(excerptOf("# One line"), "");
    EXPECT_EQ(excerptOf(""), "");
}

TEST(ExcerptOf, CutsCharactersWholeAndLooksNoFurther) {
    std::string letters;
    for (int i = 0; i < 300; ++i)
        letters += "ż";
    EXPECT_EQ(excerptOf("T\n" + letters), letters.substr(0, 400));
    EXPECT_EQ(excerptOf("T\n" + std::string(9000, '\n') + "far away"), "");
}

}  // namespace corvel
