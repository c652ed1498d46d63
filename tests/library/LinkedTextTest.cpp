#include "library/LinkedText.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

namespace corvel::linkedText {
namespace {

TEST(LinkedText, WhatIsNotTouchedIsWrittenByteForByte) {
    constexpr std::array<std::string_view, 8> kPieces{"a",  "b c",  "\n", "\r\n",
                                                      "\r", "żółw", "",   "\xEF\xBB\xBF"};
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        std::string bytes;
        for (auto count = random() % 12; count > 0; --count)
            bytes += kPieces[random() % kPieces.size()];
        ASSERT_EQ(encoded(decoded(bytes), bytes), bytes);
        ASSERT_EQ(encoded(decoded(bytes) + "\nend", bytes).rfind(bytes, 0), 0U)
            << "what was there is the start of a file to which something is appended";
    }
}

TEST(LinkedText, NewLinesGetTheFilesUsualEndAndOldOnesKeepTheirs) {
    struct Case {
        std::string base;
        std::string text;
        std::string expected;
    };
    const Case cases[] = {
        // All of one kind.
        {"a\r\nb\r\n", "a\nnew\nb\n", "a\r\nnew\r\nb\r\n"},
        {"\xEF\xBB\xBF"
         "a\n",
         "b\nc",
         "\xEF\xBB\xBF"
         "b\nc"},
        {"", "b\nc", "b\nc"},
        {"\r\n", "", ""},
        // Mixed: more CRLF than LF, a line changed, one put in, one taken out.
        {"a\r\nb\nc\r\nd\r\n", "a\nb\nX\nd\n", "a\r\nb\nX\r\nd\r\n"},
        {"a\r\nb\nc\r\nd\r\n", "a\nc\nd\n", "a\r\nc\r\nd\r\n"},
        {"a\nb\r\nc\nd\ne", "0\na\nb\nc\nd\ne\nf", "0\na\nb\r\nc\nd\ne\nf"},
        // Of lines that are there twice each keeps its own.
        {"a\r\nx\nx\r\nb\r\n", "A\nx\nx\nB\n", "A\r\nx\nx\r\nB\r\n"},
        // A line is moved: it takes its end along.
        {"a\nb\nc\r\nd\ne\n", "c\na\nb\nd\ne\n", "c\r\na\nb\nd\ne\n"},
        // A carriage return of the text is none of a line end's.
        {"a\r\r\nb\r\n", "a\r\nb\nc\n", "a\r\r\nb\r\nc\r\n"},
    };
    for (const auto& [base, text, expected] : cases) {
        EXPECT_EQ(encoded(text, base), expected) << "base: " << base << "\ntext: " << text;
        EXPECT_EQ(decoded(encoded(text, base)), text);
    }
}

TEST(LinkedText, TellsWhatIsNoUtf8Text) {
    using namespace std::string_view_literals;
    EXPECT_EQ(faultIn("zażółć\r\n"), std::nullopt);
    EXPECT_EQ(faultIn(""), std::nullopt);
    EXPECT_EQ(faultIn("\xEF\xBB\xBF"), std::nullopt);
    EXPECT_EQ(faultIn("\xFF\xFE"
                      "a\0"sv),
              LinkFault::utf16);
    EXPECT_EQ(faultIn("\xFE\xFF\0a"sv), LinkFault::utf16);
    EXPECT_EQ(faultIn("\x7F"
                      "ELF\0\0"sv),
              LinkFault::binary);
    EXPECT_EQ(faultIn("za\xBF\xF3\xB3\xE6"), LinkFault::notUtf8);
}

}  // namespace
}  // namespace corvel::linkedText
