#include "app/editing/DifferencePieces.h"
#include "app/editing/SequenceMatch.h"
#include "app/editing/TextDifference.h"
#include "app/editing/TextEdit.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

namespace corvel::editing {
namespace {

using Kind = DifferenceRun::Kind;

/// "[-removed-]{+added+}" within what was kept.
std::string marked(std::string_view before, std::string_view after) {
    std::string text;
    for (const auto& run : differencesOf(before, after)) {
        if (run.kind == Kind::kept) text += slice(before, run.before);
        if (run.kind == Kind::removed) text += "[-" + std::string(slice(before, run.before)) + "-]";
        if (run.kind == Kind::added) text += "{+" + std::string(slice(after, run.after)) + "+}";
    }
    return text;
}

/// That the runs follow each other without gaps, make both texts, and keep what is the same.
void expectToMakeBoth(const std::string& before, const std::string& after) {
    std::string old;
    std::string present;
    for (const auto& run : differencesOf(before, after)) {
        ASSERT_EQ(run.before.begin, old.size());
        ASSERT_EQ(run.after.begin, present.size());
        old += slice(before, run.before);
        present += slice(after, run.after);
        if (run.kind == Kind::kept) {
            ASSERT_EQ(slice(before, run.before), slice(after, run.after));
        } else {
            ASSERT_TRUE(slice(run.kind == Kind::removed ? after : before,
                              run.kind == Kind::removed ? run.after : run.before)
                            .empty());
        }
    }
    ASSERT_EQ(old, before);
    ASSERT_EQ(present, after);
}

TEST(TextDifference, ShowsChangedWordsWithinTheirLine) {
    EXPECT_EQ(marked("Ala ma kota.\nI psa.\n", "Ala miała kota.\nI psa.\n"),
              "Ala [-ma-]{+miała+} kota.\nI psa.\n");
    EXPECT_EQ(marked("a b c\n", "a b c\n"), "a b c\n");
    EXPECT_EQ(marked("jeden dwa", "jeden dwa trzy"), "jeden dwa{+ trzy+}");
    EXPECT_EQ(marked("", "new\n"), "{+new\n+}");
    EXPECT_EQ(marked("old\n", ""), "[-old\n-]");
    EXPECT_EQ(marked("", ""), "");
}

TEST(TextDifference, ShowsLinesThatCameAndWent) {
    EXPECT_EQ(marked("# Plan\n\nfirst line\nsecond\n", "# Plan\n\nsecond\nthird thing\n"),
              "# Plan\n\n[-first line\n-]second\n{+third thing\n+}");
}

TEST(TextDifference, JoinsChangesThatOnlySpacesPart) {
    EXPECT_EQ(marked("We will go to the old town early, by train, with friends and a dog.",
                     "We will go to a new city early, by train, with friends and a dog."),
              "We will go to [-the old town-]{+a new city+} early, by train, with friends and a "
              "dog.");
}

TEST(TextDifference, ExchangesWholeLinesThatHaveLittleInCommon) {
    EXPECT_EQ(marked("The weather is fine in spring, the birds sing.\n",
                     "Nobody, the letter says, ever came back from there.\n"),
              "[-The weather is fine in spring, the birds sing.\n-]"
              "{+Nobody, the letter says, ever came back from there.\n+}");
}

TEST(TextDifference, MakesTheNewTextOfTheOldWhateverTheyAre) {
    std::mt19937 random(7);
    const std::vector<std::string> words{"a",    "ż",  " ", "\n",   "słowo",
                                         "🙂", ". ", "#", "\n\n", "e\u0301"};
    const auto any = [&](std::size_t most) {
        std::string text;
        for (auto count = random() % most; count > 0; --count)
            text += words[random() % words.size()];
        return text;
    };
    for (int round = 0; round < 2000; ++round) {
        const std::string before = any(60);
        std::string after = any(60);
        if (round % 2 == 0) {
            after = before;
            const auto at = [&] {
                return static_cast<std::ptrdiff_t>(random() % (after.size() + 1));
            };
            for (auto edits = random() % 6; edits > 0; --edits)
                after.insert(static_cast<std::size_t>(at()), random() % 2 == 0 ? "x" : "\nq ");
        }
        expectToMakeBoth(before, after);
        if (HasFatalFailure()) FAIL() << before << "\n--\n" << after;
    }
}

TEST(TextDifference, FindsTheFewestChangesOfRepeatedElements) {
    const std::vector<std::uint32_t> before{1, 2, 3, 1, 2, 2, 1};
    const std::vector<std::uint32_t> after{3, 2, 1, 2, 1, 3};
    std::size_t budget = 1000;
    std::size_t common = 0;
    for (const auto& stretch : matchedStretches(before, after, budget))
        common += stretch.count;
    EXPECT_EQ(common, 4U);
    EXPECT_LT(budget, 1000U);
}

// Unlike texts, one line of a megabyte, and lines that all repeat: none may take long.
TEST(TextDifference, BoundsItsWork) {
    std::mt19937 random(3);
    const auto text = [&random](std::size_t lines, std::size_t words, unsigned vocabulary) {
        std::string made;
        for (std::size_t line = 0; line < lines; ++line) {
            for (std::size_t word = 0; word < words; ++word)
                made += "word" + std::to_string(random() % vocabulary) + " ";
            made += '\n';
        }
        return made;
    };
    const std::string longLine = text(1, 110'000, 5000);
    std::string changedLine = longLine;
    changedLine.replace(changedLine.size() / 2, 10, "something else");
    const std::vector<std::pair<std::string, std::string>> cases{
        {text(10'000, 11, 5000), text(10'000, 11, 5000)},
        {text(100'000, 1, 3), text(100'000, 1, 3)},
        {longLine, text(1, 110'000, 5000)},
        {longLine, changedLine},
    };
    for (const auto& [before, after] : cases) {
        const auto start = std::chrono::steady_clock::now();
        expectToMakeBoth(before, after);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        EXPECT_LT(taken.count(), 2.0);  // tens of milliseconds when nothing else runs
    }
    EXPECT_LT(marked(longLine, changedLine).size(), longLine.size() + 100);
}

/// As it is shown: "…3" for three folded lines, the number of a change before each of its pieces.
std::string shown(std::string_view before, std::string_view after) {
    std::string text;
    for (const auto& piece : piecesOf(before, after, differencesOf(before, after), 1)) {
        const std::string change = std::to_string(piece.change);
        if (piece.kind == DifferencePiece::Kind::folded) {
            EXPECT_EQ(std::ranges::count(piece.text, '\n'), static_cast<long>(piece.lines));
            text += "…" + std::to_string(piece.lines);
            continue;
        }
        if (piece.kind == DifferencePiece::Kind::removed) text += "-" + change + ":";
        if (piece.kind == DifferencePiece::Kind::added) text += "+" + change + ":";
        text += piece.text;
    }
    return text;
}

TEST(DifferencePieces, FoldWhatIsFarFromEveryChange) {
    const std::string lines = "1\n2\n3\n4\n5\n6\n7\n8\n";
    EXPECT_EQ(shown(lines + "old end\n", lines + "new end\n"),
              "…7"
              "8\n-0:old+0:new end\n");
    EXPECT_EQ(shown("a\n" + lines + "b\n", "A\n" + lines + "B\n"),
              "-0:a+0:A\n1\n…6"
              "8\n-1:b+1:B\n");
    EXPECT_EQ(shown("so a b\n" + lines, "so A b\n" + lines), "so -0:a+0:A b\n1\n…7");
    EXPECT_EQ(shown("a\n1\n2\n3\nb\n", "1\n2\n3\nb\nc\n"), "-0:a\n1\n2\n3\nb\n+1:c\n");
    EXPECT_EQ(shown(lines, lines), lines);
    EXPECT_EQ(shown("", ""), "");
}

}  // namespace
}  // namespace corvel::editing
