#include "platform/Text.h"

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <memory>
#include <random>
#include <regex>
#include <vector>

namespace corvel::text {

namespace {

icu::UnicodeString wide(std::string_view text) {
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    text.toUTF8String(result);
    return result;
}

// "LATIN SMALL LETTER L WITH STROKE" gives "l".
UChar32 baseByName(UChar32 letter) {
    char name[128];
    UErrorCode status = U_ZERO_ERROR;
    u_charName(letter, U_EXTENDED_CHAR_NAME, name, sizeof name, &status);
    static const std::regex pattern("LATIN SMALL LETTER ([A-Z]) WITH .*STROKE.*");
    std::cmatch found;
    const bool isStroked = letter > 0x7F && std::regex_match(name, found, pattern);
    // A stroke together with a hook is another letter.
    if (!isStroked || std::string(name).find("HOOK") != std::string::npos) return letter;
    return found[1].str()[0] + 32;
}

/// The search form by ICU alone, over the whole text at once.
std::string foldedByIcu(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto nfd = icu::Normalizer2::getNFDInstance(status)->normalize(wide(text), status);
    icu::UnicodeString bare;
    for (std::int32_t i = 0; i < nfd.length(); i = nfd.moveIndex32(i, 1)) {
        const UChar32 c = nfd.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK && u_getCombiningClass(c) == 0) bare.append(c);
    }
    bare.foldCase();
    icu::UnicodeString based;
    for (std::int32_t i = 0; i < bare.length(); i = bare.moveIndex32(i, 1)) {
        based.append(baseByName(bare.char32At(i)));
    }
    return utf8(based);
}

std::int32_t wordsByIcu(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> words(
        icu::BreakIterator::createWordInstance(icu::Locale::getRoot(), status));
    const auto source = wide(text);
    words->setText(source);
    std::int32_t count = 0;
    while (words->next() != icu::BreakIterator::DONE) {
        if (words->getRuleStatus() >= UBRK_WORD_NONE_LIMIT) ++count;
    }
    return count;
}

std::string prefixByIcu(std::string_view text, std::size_t count) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> characters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    const auto source = wide(text);
    characters->setText(source);
    std::int32_t end = 0;
    for (std::size_t i = 0; i < count && end != icu::BreakIterator::DONE; ++i) {
        end = characters->next();
    }
    return end == icu::BreakIterator::DONE ? std::string(text) : utf8(source.tempSubString(0, end));
}

using Random = std::mt19937;

std::string randomOf(const std::vector<std::string>& alphabet, std::size_t length, Random& random) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i)
        text += alphabet[random() % alphabet.size()];
    return text;
}

const std::vector<std::string> kMixed = {
    "a",      "Z",          "ą",
    "Ł",      "e\u0301",    "ß",
    "İ",      "ŉ",          "ﬁ",
    "Σ",      "ς",          "\u0345",
    "한",     "漢",         "😀",
    "\u302E", "\U00016FF0", " ",
    "\n",     "Ǆ",          "plain ascii text of some length, MORE than a block of it",
};

}  // namespace

TEST(SearchFolding, EqualsIcuForEveryCodePoint) {
    for (UChar32 c = 1; c < 0x30000; ++c) {
        if (U_IS_SURROGATE(c)) continue;
        const auto text = utf8(icu::UnicodeString(c));
        ASSERT_EQ(foldedForSearch(text), foldedByIcu(text)) << std::hex << c;
    }
}

TEST(SearchFolding, EqualsIcuOverWholeTextsAndGoesByPieces) {
    Random random(7);
    for (int round = 0; round < 3000; ++round) {
        const auto text = randomOf(kMixed, random() % 30, random);
        const auto folded = foldedForSearch(text);
        ASSERT_EQ(folded, foldedByIcu(text)) << text;
        const auto start = prefixByBytes(text, random() % (text.size() + 1));
        ASSERT_EQ(folded, foldedForSearch(start) + foldedForSearch(text.substr(start.size())));
    }
}

TEST(SearchFolding, MeetsWhatPeopleType) {
    EXPECT_EQ(foldedForSearch("Łódź"), "lodz");
    EXPECT_EQ(foldedForSearch("CAFÉ"), foldedForSearch("cafe\u0301"));
    EXPECT_EQ(foldedForSearch("Straße"), foldedForSearch("STRASSE"));
    EXPECT_EQ(foldedForSearch("SØREN İzmir Đurđa"), "soren izmir durda");
    EXPECT_EQ(foldedForSearch("a\xFF"
                              "b\xC5"),
              "a\uFFFDb\uFFFD");
}

TEST(Text, RepairsWhatIsNotText) {
    EXPECT_EQ(repaired("zażółć"), "zażółć");
    EXPECT_EQ(repaired(std::string_view("a\0b", 3)), "a\u2400b");
    EXPECT_EQ(repaired("a\xC3(\xE2\x82"), "a\uFFFD(\uFFFD");
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));              // a surrogate
    EXPECT_FALSE(isValidUtf8("\xC0\xAF"));                  // an overlong form
    EXPECT_FALSE(isValidUtf8("12345678\xF4\x90\x80\x80"));  // beyond the last code point
    EXPECT_TRUE(isValidUtf8("12345678 \U0010FFFF"));
    Random random(3);
    for (int round = 0; round < 2000; ++round) {
        std::string noise;
        for (int i = 0; i < 12; ++i)
            noise.push_back(static_cast<char>(random() % 256));
        ASSERT_TRUE(isValidUtf8(repaired(noise)));
        ASSERT_EQ(repaired(noise) == noise, isValidUtf8(noise) && noise.find('\0') == noise.npos);
    }
}

TEST(Text, LowersAndStripsBeyondAscii) {
    EXPECT_EQ(lowercased("ŁÓDŹ i Ascii"), "łódź i ascii");
    EXPECT_EQ(lowercased("ΟΔΟΣ"), "οδος");
    EXPECT_EQ(withoutDiacritics("Zażółć gęślą jaźń"), "Zazołc gesla jazn");
    EXPECT_EQ(withoutDiacritics("한글 é"), "한글 e");
}

TEST(Text, CountsWordsAsIcuDoes) {
    EXPECT_EQ(wordCount(""), 0);
    EXPECT_EQ(wordCount("# Plan — don't, 3.14; e-mail: a_b"), 6);
    EXPECT_EQ(wordCount("東京に行きます"), wordsByIcu("東京に行きます"));
    const std::vector<std::string> alphabet = {
        "a",      "B",      "ż",      "я", "1",   "٣",      "_",    "'",  ".", ":",
        ",",      ";",      "\"",     "-", " ",   "\n",     "\r\n", "\t", "’", "–",
        "…",      "\u0301", "\u00AD", "·", "א",   "カ",     "漢",   "한", "🇵", "😀",
        "\u200D", "\u00A0", "\u2003", "‿", "ไทย", "\u2028", "#",    "*"};
    Random random(11);
    for (int round = 0; round < 20000; ++round) {
        // Now all of it, now only what is scanned by hand.
        auto part = alphabet;
        if (round % 2 == 0) part.resize(21);
        const auto text = randomOf(part, random() % 14, random);
        ASSERT_EQ(wordCount(text), wordsByIcu(text)) << text;
    }
}

TEST(Text, CountsTheWordsOfLongTextAsIcuDoes) {
    // Common letters many times, so that some blocks are plain, and all that may stand at their
    // ends.
    std::vector<std::string> alphabet = {"a", "b", "ż", "ó",  "я", "1", "2", " ", ".", "'",
                                         ",", ";", "@", "\n", "a", " ", "e", "o", "s", "t"};
    const std::vector<std::string> rare = {"_", "×", "÷", ":", "\"", "–", "„", "漢", "\u0301", "·"};
    Random random(17);
    for (int round = 0; round < 20000; ++round) {
        auto part = alphabet;
        if (round % 2 == 0) part.push_back(rare[random() % rare.size()]);
        const auto text = randomOf(part, 60 + random() % 150, random);
        ASSERT_EQ(wordCount(text), wordsByIcu(text)) << text;
    }
}

TEST(Text, CountsWordsAsIcuDoesAroundEveryCommonCharacter) {
    for (UChar32 c = 1; c < 0x2110; ++c) {
        if (c == 0x600) c = 0x1FF0;
        const auto mark = utf8(icu::UnicodeString(c));
        const auto text = mark + " a" + mark + "b 1" + mark + "2 1" + mark + "b _" + mark + "'" +
                          mark + mark + " " + mark + "a" + mark + mark + "b";
        ASSERT_EQ(wordCount(text), wordsByIcu(text)) << std::hex << c;
    }
}

TEST(Text, CutsWhereIcuBreaksCharacters) {
    const std::vector<std::string> alphabet = {"a",      "ż",      "ÿ",      "–",  "…", "\u00AD",
                                               "\r",     "\n",     "\u0301", "😀",  "🇵", "\u200D",
                                               "\u2010", "\uFE0F", "\u0600", "한", "©", "\u203C"};
    Random random(5);
    for (int round = 0; round < 20000; ++round) {
        const auto text = randomOf(alphabet, random() % 10, random);
        const std::size_t count = random() % 10;
        ASSERT_EQ(prefixByGraphemes(text, count), prefixByIcu(text, count)) << text;
    }
}

TEST(Text, CutsByUserPerceivedCharacters) {
    EXPECT_EQ(prefixByGraphemes("abc", 2), "ab");
    EXPECT_EQ(prefixByGraphemes("abc", 9), "abc");
    EXPECT_EQ(prefixByGraphemes("ae\u0301x", 2), "ae\u0301");
    EXPECT_EQ(prefixByGraphemes("a\r\nb", 2), "a\r\n");
    EXPECT_EQ(prefixByGraphemes("👩\u200D👧🇵🇱x", 2), "👩\u200D👧🇵🇱");
    EXPECT_EQ(prefixByGraphemes("ż", 0), "");
    EXPECT_EQ(prefixByBytes("aż", 2), "a");
    EXPECT_EQ(prefixByBytes("a😀b", 4), "a");
    EXPECT_EQ(prefixByBytes("a😀b", 5), "a😀");
}

TEST(Text, CollatesByTheLanguage) {
    EXPECT_LT(collate("ł", "m", "pl"), 0);
    EXPECT_GT(collate("ł", "lz", "pl"), 0);
    EXPECT_LT(collate("zebra", "Żaba", "pl"), 0);
    EXPECT_LT(collate("zebra", "Zoo", "en"), 0);
    EXPECT_EQ(collate("", "", "en"), 0);
}

TEST(Text, ReadsWindows1250) {
    EXPECT_EQ(fromWindows1250("Za\xBF\xF3\xB3\xE6 \x84g\xEA\x9Cl\xB9\x94 \x80"),
              "Zażółć „gęślą” €");
    EXPECT_EQ(fromWindows1250("a\x81"), std::nullopt);
}

}  // namespace corvel::text
