#include "library/DraftFile.h"
#include "library/DraftJournal.h"
#include "library/EditedText.h"
#include "platform/Text.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

#include <glibmm/ustring.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <utility>

namespace corvel {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

const Uuid kNote = *Uuid::parse("12345678-1234-4234-8234-123456789ABC");

class DraftTest : public testing::Test {
protected:
    std::filesystem::path folder() const { return temporary.path() / "drafts"; }
    std::vector<std::filesystem::path> files() const { return draftsIn(folder()); }
    std::string onlyFile() const {
        std::ifstream file(files().at(0), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void flush() {
        journal.flush(kNote, base, [this] { return wholeText; });
    }

    TemporaryFolder temporary;
    DraftJournal journal{folder()};
    std::string base = "zażółć";
    std::string wholeText;
};

TEST_F(DraftTest, KeepsEditsTitleAndWholeTextsInTheirOrder) {
    journal.add({6, 0, " gęślą"});
    journal.add({12, 0, " jaźń"});
    flush();
    journal.add({0, 1, ""});
    journal.add({0, 0, "Z"});
    journal.addTitle("Własny");
    flush();
    EXPECT_THAT(files(), SizeIs(1));
    auto draft = readDraft(files().at(0)).value();
    EXPECT_EQ(draft.noteID, kNote);
    EXPECT_EQ(draft.base, base);
    EXPECT_EQ(draft.text, "Zażółć gęślą jaźń");
    EXPECT_EQ(draft.title, "Własny");
    EXPECT_FALSE(draft.isDamaged);

    wholeText = "anything";
    journal.addWholeText();
    flush();
    journal.add({8, 0, "!"});
    flush();
    EXPECT_EQ(readDraft(files().at(0))->text, "anything!");
    const auto status = std::filesystem::status(files().at(0)).permissions();
    EXPECT_EQ(status & std::filesystem::perms(077), std::filesystem::perms::none);

    journal.discard();
    EXPECT_THAT(files(), IsEmpty());
    flush();
    EXPECT_THAT(files(), IsEmpty()) << "nothing was typed since";
    base = "b";
    journal.add({1, 0, "c"});
    flush();
    EXPECT_EQ(readDraft(files().at(0))->text, "bc");
    for (const TextEdit& edit : {TextEdit{0, 0, "xy"}, {2, 0, "z"}, {2, 0, "before z "}})
        journal.add(edit);
    flush();
    EXPECT_EQ(readDraft(files().at(0))->text, "xybefore z zbc");
}

TEST_F(DraftTest, AFileCutOrChangedAnywhereGivesAStateThatWasTypedOrNothing) {
    std::vector<std::string> typed{base};
    EditedText text(base);
    const std::vector<TextEdit> edits{{6, 0, "ab"}, {0, 2, ""}, {3, 0, "ęć"}, {1, 1, "x"}};
    for (const TextEdit& edit : edits) {
        journal.add(edit);
        flush();
        ASSERT_TRUE(text.apply(edit));
        typed.push_back(text.text());
    }
    const std::string whole = onlyFile();
    std::size_t states = 0;
    std::string last;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const auto draft = parseDraft(std::string_view(whole).substr(0, size));
        if (!draft) continue;
        EXPECT_THAT(typed, Contains(draft->text)) << "cut at " << size;
        EXPECT_EQ(draft->noteID, kNote);
        if (std::exchange(last, draft->text) != draft->text) ++states;
    }
    EXPECT_EQ(states, edits.size() - 1) << "every whole record counts";
    for (std::size_t place = 0; place < whole.size(); ++place) {
        std::string changed = whole;
        changed[place] = static_cast<char>(changed[place] ^ 0x10);
        const auto draft = parseDraft(changed);
        if (!draft) continue;
        EXPECT_THAT(typed, Contains(draft->text)) << "changed at " << place;
        EXPECT_TRUE(draft->isDamaged);
    }
}

TEST_F(DraftTest, ADiskThatTakesNothingIsLoggedOnceAndTriedAgain) {
    temporary.write("drafts", "a file where the folder should be");
    testing::internal::CaptureStdout();
    journal.add({6, 0, "!"});
    flush();
    flush();
    const std::string log = testing::internal::GetCapturedStdout();
    EXPECT_THAT(log, testing::StartsWith("Error writing draft: "));
    EXPECT_EQ(std::ranges::count(log, '\n'), 1);
    std::filesystem::remove(folder());
    flush();
    EXPECT_EQ(readDraft(files().at(0))->text, base + "!") << "what was typed meanwhile is not lost";
}

// As on a disk that runs full in the middle of a record.
TEST_F(DraftTest, ATornRecordDoesNotStandBeforeWhatIsTypedLater) {
    journal.add({6, 0, "!"});
    flush();
    journal.add({7, 0, std::string(50'000, 'x')});
    testing::internal::CaptureStdout();
    {
        const FileSizeLimit full(20'000);
        flush();
        EXPECT_TRUE(journal.isBehind());
        EXPECT_EQ(readDraft(files().at(0))->text, base + "!");
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("Error writing draft"));
    journal.add({0, 1, "Z"});
    flush();
    EXPECT_FALSE(journal.isBehind());
    const auto draft = readDraft(files().at(0)).value();
    EXPECT_EQ(draft.text, "Zażółć!" + std::string(50'000, 'x'));
    EXPECT_FALSE(draft.isDamaged);
}

TEST_F(DraftTest, AStoredTextThatIsNoTextIsTheOneThatTheEditsWereMadeTo) {
    base = std::string("a\xFF\0z", 4);
    const std::string shown = text::repaired(base);
    journal.add({text::characterCount(shown), 0, "!"});
    flush();
    const auto draft = readDraft(files().at(0)).value();
    EXPECT_EQ(draft.base, shown);
    EXPECT_EQ(draft.text, shown + "!");
}

// Typing, deleting and pasting, with whole texts in between, written at any moment.
TEST_F(DraftTest, HoldsWhatWasTypedHoweverItWasWritten) {
    std::mt19937 random(11);
    const auto below = [&random](std::size_t end) { return random() % end; };
    EditedText typed(base);
    std::size_t cursor = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::size_t length = text::characterCount(typed.text());
        if (below(9) == 0) cursor = below(length + 1);
        if (below(3) == 0) cursor -= std::min(cursor, below(3));
        cursor = std::min(cursor, length);
        const TextEdit edit{cursor, below(std::min<std::size_t>(3, length - cursor + 1)),
                            std::vector<std::string>{"", "ż", "ab"}[below(3)]};
        ASSERT_TRUE(typed.apply(edit));
        cursor += text::characterCount(edit.inserted);
        wholeText = typed.text();
        if (below(20) == 0) {
            journal.addWholeText();
        } else {
            journal.add(edit);
        }
        if (below(4) != 0) continue;
        flush();
        ASSERT_EQ(readDraft(files().at(0))->text, typed.text()) << "after " << i;
    }
}

TEST(EditedText, GivesWhatEditingCodePointsGives) {
    std::mt19937 random(7);
    const std::u32string letters = U"aąβ語🙂\n";
    const auto utf8 = [](const std::u32string& text) {
        std::string bytes;
        for (const char32_t letter : text) {
            const Glib::ustring one(1, letter);
            bytes += one.raw();
        }
        return bytes;
    };
    std::u32string expected;
    EditedText edited("");
    for (int i = 0; i < 3000; ++i) {
        const std::size_t offset = random() % (expected.size() + 1);
        const std::size_t removed =
            random() % std::min<std::size_t>(4, expected.size() - offset + 1);
        std::u32string inserted;
        for (auto count = random() % 4; count > 0; --count) {
            inserted += letters[random() % letters.size()];
        }
        expected.replace(offset, removed, inserted);
        ASSERT_TRUE(edited.apply({offset, removed, utf8(inserted)}));
        ASSERT_EQ(edited.text(), utf8(expected));
    }
    EXPECT_FALSE(edited.apply({expected.size() + 1, 0, "x"}));
    EXPECT_FALSE(edited.apply({0, expected.size() + 1, ""}));
    EXPECT_FALSE(edited.apply({2, static_cast<std::size_t>(-1), ""}));
    EXPECT_EQ(edited.text(), utf8(expected));
}

}  // namespace
}  // namespace corvel
