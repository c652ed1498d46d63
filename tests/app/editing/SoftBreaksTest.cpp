#include "app/editing/SoftBreaks.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace corvel::editing {
namespace {

std::size_t longestPiece(std::string_view text) {
    std::size_t longest = 0;
    while (!text.empty()) {
        const auto end = std::min({text.find(kSoftBreak), text.find('\n'), text.size() - 1}) + 1;
        longest = std::max(longest, end);
        text.remove_prefix(end);
    }
    return longest;
}

std::string repeated(std::string_view piece, std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += piece;
    return text;
}

TEST(SoftBreaks, ShowLongLinesInPiecesAndGiveTheTextBack) {
    for (const char* word : {"słowo word ", "x", "ż", "🙂", " ", "a\u0301"}) {
        const std::string text = "short\n\n" + repeated(word, 20'000) + "\nend\n";
        const auto shown = withSoftBreaks(text);
        ASSERT_TRUE(shown) << word;
        EXPECT_LE(longestPiece(*shown), 4010) << word;
        EXPECT_EQ(withoutSoftBreaks(*shown), text) << word;
    }
    const std::string endless = repeated("word ", 20'000);
    EXPECT_EQ(withoutSoftBreaks(*withSoftBreaks(endless)), endless);
}

TEST(SoftBreaks, MakeShorterPiecesOfLongWords) {
    const std::string image = "text ![](data:image/png;base64," + repeated("a", 5000) + ") text";
    const auto shown = withSoftBreaks(image);
    ASSERT_TRUE(shown);
    EXPECT_LE(longestPiece(*shown), 2000);
    EXPECT_EQ(withoutSoftBreaks(*shown), image);
}

TEST(SoftBreaks, FallBehindSpacesAndBetweenCharacters) {
    const auto words = *withSoftBreaks(repeated("word ", 20'000));
    EXPECT_EQ(words.find("word" + std::string(kSoftBreak)), std::string::npos);
    const auto letters = *withSoftBreaks("a" + repeated("ż", 20'000));
    for (auto at = letters.find(kSoftBreak); at != std::string::npos;
         at = letters.find(kSoftBreak, at + 1)) {
        EXPECT_EQ(letters.substr(at - 2, 2), "ż");
        EXPECT_EQ(letters.substr(at + kSoftBreak.size(), 2), "ż");
    }
}

TEST(SoftBreaks, LeaveLinesThatAreShortAndSeparatorsOfTheTextItself) {
    EXPECT_FALSE(withSoftBreaks(""));
    EXPECT_FALSE(withSoftBreaks(repeated("a line of a long note\n", 20'000)));
    EXPECT_FALSE(withSoftBreaks(repeated("word ", 20'000) + std::string(kSoftBreak)));
    EXPECT_FALSE(withSoftBreaks(repeated("word ", 1900) + "\n"));
    EXPECT_FALSE(withSoftBreaks("see " + repeated("x", 1900) + " there"));
    EXPECT_EQ(withoutSoftBreaks("plain"), "plain");
}

}  // namespace
}  // namespace corvel::editing
