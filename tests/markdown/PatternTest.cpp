#include "markdown/BareUrl.h"
#include "markdown/EmailInlineStyles.h"
#include "markdown/HeadingSlug.h"
#include "markdown/ImagePasses.h"
#include "markdown/TagStyler.h"
#include "platform/Text.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <functional>
#include <memory>
#include <random>

// The hand-written scanners against the regular expressions they stand for, run by ICU.

namespace corvel {
namespace {

using icu::UnicodeString;

std::unique_ptr<icu::RegexMatcher> matcherFor(const char* pattern,
                                              const UnicodeString& text,
                                              int flags = 0) {
    UErrorCode status = U_ZERO_ERROR;
    auto matcher = std::make_unique<icu::RegexMatcher>(UnicodeString::fromUTF8(pattern), text,
                                                       static_cast<std::uint32_t>(flags), status);
    EXPECT_TRUE(U_SUCCESS(status));
    return matcher;
}

std::string utf8(const UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

using Replace = std::function<std::string(const std::function<std::string(int)>& group)>;

std::string replacedByIcu(const char* pattern, const std::string& text, const Replace& replace) {
    const UnicodeString source = UnicodeString::fromUTF8(text);
    const auto matcher = matcherFor(pattern, source);
    std::string result;
    int copied = 0;
    UErrorCode status = U_ZERO_ERROR;
    while (matcher->find(status)) {
        const auto group = [&](int number) { return utf8(matcher->group(number, status)); };
        result += utf8(source.tempSubStringBetween(copied, matcher->start(status)));
        result += replace(group);
        copied = matcher->end(status);
    }
    return result + utf8(source.tempSubString(copied));
}

std::string randomText(std::mt19937& random, const std::vector<std::string>& words, int most) {
    std::string text;
    for (auto left = random() % static_cast<unsigned>(most); left > 0; --left)
        text += words[random() % words.size()];
    return text;
}

constexpr int kRounds = 5'000;

TEST(Patterns, BareUrlsAreFoundAsByTheExpression) {
    std::mt19937 random(1);
    const std::vector<std::string> words = {
        "http", "https",  "s",      "://",    ":",      "/",      "a",
        "ż",    " ",      "'",      "\"",     "<",      ">",      "\n",
        "\v",   "\u0085", "\u00A0", "\u2003", "\u3000", "\u200B", "\u180E"};
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = randomText(random, words, 16);
        std::string marked;
        std::size_t copied = 0;
        while (const auto url = findBareUrl(text, copied)) {
            marked.append(text, copied, url->begin - copied)
                .append("[")
                .append(text, url->begin, url->end - url->begin)
                .append("]");
            copied = url->end;
        }
        marked.append(text, copied);
        const auto mark = [](const auto& group) { return "[" + group(0) + "]"; };
        ASSERT_EQ(marked, replacedByIcu("https?://[^\\s<>\"']+", text, mark)) << text;
    }
}

TEST(Patterns, ImagePassesReplaceAsTheirExpressions) {
    std::mt19937 random(2);
    const std::vector<std::string> words = {"<img",
                                            "<img ",
                                            "<img\u00A0",
                                            "src",
                                            "src=\"/",
                                            "src = \"",
                                            "=",
                                            "\"",
                                            "/",
                                            "/a",
                                            ">",
                                            " ",
                                            "\n",
                                            "{width=",
                                            "}",
                                            "{",
                                            "x",
                                            "ż",
                                            "<imgx",
                                            "\">",
                                            "attachment://",
                                            "0123456789ABCDEFabcdef-0123456789ABCD",
                                            "0",
                                            "z"};
    const auto bracket = [](std::string_view text) {
        return std::optional("[" + std::string(text) + "]");
    };
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = randomText(random, words, 24);
        ASSERT_EQ(imagepasses::replaceAttachments(text, bracket),
                  replacedByIcu("attachment://([0-9A-Fa-f\\-]{36})", text,
                                [](const auto& group) { return "[" + group(1) + "]"; }))
            << text;
        ASSERT_EQ(imagepasses::replaceLocalSources(text, bracket),
                  replacedByIcu(
                      "(<img\\s[^>]*src\\s*=\\s*\")(/[^\"]+)(\"[^>]*>)", text,
                      [](const auto& group) { return group(1) + "[" + group(2) + "]" + group(3); }))
            << text;
        ASSERT_EQ(imagepasses::applyWidths(text),
                  replacedByIcu("(<img\\s[^>]*>)\\s*\\{width=([^}]+)\\}", text,
                                [](const auto& group) {
                                    std::string tag = group(1);
                                    tag.pop_back();
                                    return tag + " style=\"width:" + group(2) + ";\">";
                                }))
            << text;
    }
}

// The plain way: every match of the tag, last to first, by search and insertion.
UnicodeString styledPlainly(const UnicodeString& text,
                            const std::string& tag,
                            const UnicodeString& style) {
    const UnicodeString attribute = UnicodeString("style=\"") + style + "\"";
    std::vector<std::pair<int, int>> matches;
    UErrorCode status = U_ZERO_ERROR;
    const auto matcher = matcherFor(("<" + tag + "(\\s|>)").c_str(), text, UREGEX_CASE_INSENSITIVE);
    while (matcher->find(status))
        matches.emplace_back(matcher->start(1, status), matcher->end(status));
    UnicodeString result = text;
    for (auto match = matches.rbegin(); match != matches.rend(); ++match) {
        const auto [name, end] = *match;
        if (result[name] == '>') {
            result.insert(name, UnicodeString(" ") + attribute);
            continue;
        }
        const int close = result.indexOf(u'>', name);
        if (close < 0) continue;
        if (result.tempSubStringBetween(name, close).indexOf("style=\"") < 0) {
            result.insert(end, attribute + " ");
            continue;
        }
        const int value = result.indexOf("style=\"", name) + 7;
        const int quote = result.indexOf(u'"', value);
        if (quote < 0) continue;
        const bool closed = quote > value && result[quote - 1] == ';';
        result.insert(quote, (closed ? UnicodeString() : UnicodeString(";")) + style);
    }
    return result;
}

TEST(Patterns, TagsAreStyledAsBySearchAndInsertion) {
    std::mt19937 random(3);
    const std::vector<std::string> words = {
        "<p", "<p>", "<p ",       "<P\n",         "<pre>",      "<p\u2003",
        ">",  "\"",  " style=\"", "style=\"a;\"", "style=\"\"", "class=\"b\"",
        "x",  ";",   "=",         "</p>",         " "};
    for (int round = 0; round < kRounds; ++round) {
        const std::string text = randomText(random, words, 20);
        ASSERT_EQ(TagStyler("p", "m:1").apply(text),
                  utf8(styledPlainly(UnicodeString::fromUTF8(text), "p", "m:1")))
            << text;
    }
}

TEST(Patterns, SlugsFollowTheirExpressions) {
    std::mt19937 random(4);
    const std::vector<std::string> words = {
        "A",      "ą",      "É", "ł",  "Ż", " ", "  ", "-", "_", "!", "½", "٣", "漢",
        "\u00A0", "\u0301", "😀", "\t", "Ǆ", "–", "Æ",  "ŉ", "ÿ", "Ő", "İ", "ß", "&"};
    for (int round = 0; round < kRounds / 4; ++round) {
        const std::string text = randomText(random, words, 6);
        const auto nothing = [](const auto&) { return std::string(); };
        const auto hyphen = [](const auto&) { return std::string("-"); };
        std::string slug = text::withoutDiacritics(text::lowercased(text));
        slug = replacedByIcu("[^\\p{L}\\p{N}\\s-]", slug, nothing);
        slug = replacedByIcu("\\s+", slug, hyphen);
        slug = replacedByIcu("^-+|-+$", slug, nothing);
        ASSERT_EQ(headingSlug(text), slug) << text;
    }
}

}  // namespace
}  // namespace corvel
