#include "app/DesktopSearch.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Strings = std::vector<std::string>;

class DesktopSearchTest : public testing::TestWithParam<bool> {
protected:
    /// Titles of what is found, from the index or from the store.
    Strings titles(const Strings& terms) {
        if (GetParam()) {
            while (library->searchIndex.work(std::chrono::milliseconds(5))) {
            }
        }
        Strings found;
        for (const auto& hit : search.describe(ids(terms)))
            found.push_back(hit.title);
        return found;
    }
    Strings ids(const Strings& terms) {
        std::optional<Strings> answer;
        search.find(terms, [&](const Strings& found) { answer = found; });
        EXPECT_FALSE(answer.has_value());
        EXPECT_TRUE(turnUntil([&] { return answer.has_value(); }));
        return answer.value_or(Strings{});
    }

    TemporaryFolder folder;
    TestLibrary library;
    UserDefaults defaults{folder.path() / "preferences"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    DesktopSearch search{*library, texts};
};

INSTANTIATE_TEST_SUITE_P(StoreAndIndex, DesktopSearchTest, testing::Bool());

TEST_P(DesktopSearchTest, FindsNotesWithEveryTermAnywhereNewestFirst) {
    library.add("# Łódź\nmurale i podwórka", 10);
    library.add("# Murale\nlodz nocą", 30);
    library.add("# Łódź\nbez malowideł", 20);
    const auto trashed = library.add("# Murale w Łodzi", 40);
    library->notes.moveToTrash(trashed.id);
    EXPECT_THAT(titles({"lodz", "MURAL"}), ElementsAre("Murale", "Łódź"));
    EXPECT_THAT(titles({"lodz"}), ElementsAre("Murale", "Łódź", "Łódź"));
    EXPECT_THAT(titles({"lodz", "mural", "kraków"}), IsEmpty());
    EXPECT_THAT(titles({"murale i"}), ElementsAre("Łódź"));  // one term, with a space
}

TEST_P(DesktopSearchTest, NothingAskedFindsNothingAndMuchFindsNoMoreThanItsLimit) {
    for (std::size_t i = 0; i < DesktopSearch::kMostHits + 5; ++i)
        library.add("note " + std::to_string(i));
    EXPECT_THAT(titles({}), IsEmpty());
    EXPECT_THAT(titles({"", " ", "\u0301"}), IsEmpty());
    EXPECT_THAT(titles({"note", ""}), SizeIs(DesktopSearch::kMostHits));
    EXPECT_THAT(titles({std::string(DesktopSearch::kLongestQuestion + 1, 'n')}), IsEmpty());
    EXPECT_THAT(titles({"%' OR 1=1 --", "note"}), IsEmpty());
    EXPECT_THAT(titles({"\xFF\xFE"}), IsEmpty());
}

TEST_P(DesktopSearchTest, DescribesInPlainLinesWhatIsStillThere) {
    const auto note = library.add("# A <b>title</b>\n\n**Bold** & [link](http://x)\n> more");
    const auto nameless = library.add("");
    const auto gone = library.add("# Gone");
    library->notes.moveToTrash(gone.id);
    const auto hits = search.describe({gone.id.toString(), note.id.toString(), "no id",
                                       Uuid::random().toString(), nameless.id.toString()});
    ASSERT_THAT(hits, SizeIs(2));
    EXPECT_EQ(hits[0].title, "A <b>title</b>");
    EXPECT_EQ(hits[0].excerpt, "Bold & link more");
    EXPECT_EQ(hits[1].excerpt, "");
}

TEST_P(DesktopSearchTest, AnEditDuringASearchDoesNotCutItsAnswer) {
    library.add("# First\nword", 10);
    const auto second = library.add("# Second\nword", 20);
    std::optional<Strings> answer;
    search.find({"word"}, [&](const Strings& found) { answer = found; });
    auto edited = library.stored(second.id);
    edited.content = "# Second\nother";
    library->notes.update(edited);
    ASSERT_TRUE(turnUntil([&] { return answer.has_value(); }));
    EXPECT_THAT(*answer, SizeIs(1));
}

TEST_P(DesktopSearchTest, LooksInTheWindowForWhatCanBeFoundThere) {
    library.add("# Łódź\nmurale i podwórka");
    EXPECT_EQ(search.queryFor({"murale", "i"}), "murale i");
    EXPECT_EQ(search.queryFor({"Łódź", "podwórka"}), "podwórka");
    EXPECT_EQ(search.queryFor({"two\nlines"}), "two lines");
    EXPECT_EQ(search.queryFor({""}), "");
}

TEST_P(DesktopSearchTest, AnswersEveryQuestionOnce) {
    library.add("# Word");
    int answers = 0;
    for (int i = 0; i < 30; ++i)
        search.find({"word"}, [&](const Strings&) { ++answers; });
    ASSERT_TRUE(turnUntil([&] { return answers >= 30; }));
    EXPECT_EQ(answers, 30);
}

}  // namespace
}  // namespace corvel
