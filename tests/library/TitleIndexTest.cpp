#include "library/FuzzyQuery.h"
#include "library/TitleIndex.h"
#include "platform/Text.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::optional<MatchRank> rankOf(const std::string& query, const std::string& title) {
    return FuzzyQuery(query).rank(text::foldedForSearch(title));
}

std::string marked(const std::string& query, const std::string& title) {
    std::string text = title;
    const auto ranges = FuzzyQuery(query).rangesIn(title);
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range) {
        text.insert(range->end, "]");
        text.insert(range->begin, "[");
    }
    return text;
}

TEST(FuzzyQuery, RanksByWhereTheLettersStand) {
    EXPECT_EQ(rankOf("PLAN", "plan dnia"), MatchRank::start);
    EXPECT_EQ(rankOf("lodz", "Plan Łodzi"), MatchRank::wordStart);
    EXPECT_EQ(rankOf("odz", "Plan Łodzi"), MatchRank::inside);
    EXPECT_EQ(rankOf("pd", "Plan dnia"), MatchRank::wordStarts);
    EXPECT_EQ(rankOf("pla dn", "Plan dnia"), MatchRank::wordStarts);
    EXPECT_EQ(rankOf("lni", "Plan dnia"), MatchRank::scattered);
    EXPECT_EQ(rankOf("dp", "Plan dnia"), std::nullopt);
    EXPECT_EQ(rankOf(" \t", "anything"), MatchRank::start);
    EXPECT_EQ(rankOf("本日", "日本の日"), MatchRank::scattered) << "letters, not bytes";
}

TEST(FuzzyQuery, MarksTheLettersOfTheTitleAsItIsWritten) {
    EXPECT_EQ(marked("lodz", "Plan Łodzi"), "Plan [Łodz]i");
    EXPECT_EQ(marked("an", "Banan, Ananas"), "Banan, [An]anas") << "the best place, not the first";
    EXPECT_EQ(marked("pd", "Plan dnia"), "[P]lan [d]nia");
    EXPECT_EQ(marked("ss", "Straße"), "Stra[ß]e");
    EXPECT_EQ(marked("e", "cafe\u0301"), "caf[e]\u0301");
    EXPECT_EQ(marked("", "Plan"), "Plan");
    EXPECT_EQ(marked("xyz", "Plan"), "Plan");
}

class TitleIndexTest : public testing::Test {
protected:
    Note add(const std::string& title, std::int64_t modified) {
        Note note = noteFrom("text", modified);
        note.title = title;
        library->notes.create(note);
        return note;
    }
    std::vector<std::string> search(const std::string& query, std::size_t limit = 50) {
        std::vector<std::string> titles;
        for (const RowId row : index.search(FuzzyQuery(query), limit)) {
            titles.push_back(library->listing.summary(row)->title);
        }
        return titles;
    }

    TestLibrary library;
    TitleIndex index{library.controller().viewContext(), library->notes};
};

TEST_F(TitleIndexTest, ReadsAheadWhileNotesChange) {
    auto first = add("Plan A", 1);
    const auto second = add("Plan B", 2);
    add("Plan C", 3);
    ASSERT_TRUE(index.readAhead()) << "nothing is read yet";
    first.title = "Plan A2";
    library->notes.update(first);
    ASSERT_TRUE(index.readAhead()) << "read, not folded";
    library->notes.moveToTrash(second.id);
    add("Plan D", 4);
    while (index.readAhead()) {
    }
    index.refresh();
    EXPECT_THAT(search("plan"), ElementsAre("Plan D", "Plan A2", "Plan C"));
}

TEST_F(TitleIndexTest, BetterRanksComeFirstAndNewerNotesAmongEquals) {
    add("inne plany", 1);
    add("Plan A", 2);
    add("Plan B", 3);
    add("aeroplan", 4);
    add("p l a n", 5);
    index.refresh();
    EXPECT_THAT(search("plan"),
                ElementsAre("Plan B", "Plan A", "inne plany", "aeroplan", "p l a n"));
    EXPECT_THAT(search("plan", 3), ElementsAre("Plan B", "Plan A", "inne plany"));
    EXPECT_THAT(search("", 2), ElementsAre("p l a n", "aeroplan"));
    EXPECT_THAT(search("zzz"), IsEmpty());
}

TEST_F(TitleIndexTest, FollowsWhatHappensToNotes) {
    Note first = add("Plan A", 1);
    const Note second = add("Plan B", 2);
    index.refresh();
    first.title = "Zamiar\nw dwóch wierszach";
    library->notes.update(first);
    library->notes.moveToTrash(second.id);
    add("Plan C", 3);
    index.refresh();
    EXPECT_THAT(search("plan"), ElementsAre("Plan C"));
    EXPECT_THAT(search("zamiar w"), ElementsAre(first.title));
    library->notes.restoreFromTrash(second.id);
    library->notes.deletePermanently(first.id);
    index.refresh();
    EXPECT_THAT(search("plan"), ElementsAre("Plan B", "Plan C"));
    EXPECT_THAT(search("zamiar"), IsEmpty());
    library->notes.createUnsaved(noteFrom("# Plan z importu", 9));
    library.controller().viewContext().save();
    index.refresh();
    EXPECT_THAT(search("import"), ElementsAre("Plan z importu")) << "also what came unannounced";
}

TEST_F(TitleIndexTest, FollowsMoreChangesThanItKeepsApart) {
    std::vector<Uuid> ids;
    for (int i = 0; i < 520; ++i)
        ids.push_back(add("Plan " + std::to_string(i), i).id);
    index.refresh();
    for (const auto& id : ids)
        library->notes.moveToTrash(id);
    index.refresh();
    EXPECT_THAT(search("plan"), IsEmpty());
    for (const auto& id : ids)
        library->notes.restoreFromTrash(id);
    library->notes.moveToTrash(ids.back());
    library->notes.deletePermanently(ids[518]);
    index.refresh();
    EXPECT_THAT(search("plan", 1000), SizeIs(518));
    EXPECT_THAT(search("plan", 1), ElementsAre("Plan 517"));
}

}  // namespace
}  // namespace corvel
