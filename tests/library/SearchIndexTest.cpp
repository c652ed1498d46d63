#include "library/IndexChunk.h"
#include "library/SearchIndex.h"
#include "platform/Text.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace corvel {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<RowId> all(SearchIndex::Sweep& sweep,
                       std::size_t step,
                       std::chrono::milliseconds budget) {
    std::vector<RowId> rows;
    while (!sweep.isFinished()) {
        const auto hits = sweep.next(step, budget);
        EXPECT_LE(hits.size(), step);
        rows.insert(rows.end(), hits.begin(), hits.end());
    }
    return rows;
}

void fill(SearchIndex& index) {
    while (index.work(1ms)) {
    }
}

/// Notes kept by hand beside the index: what a plain scan of them finds.
class PlainNotes {
public:
    struct Note {
        std::string title;
        std::string content;
        std::int64_t modifiedAt;
    };
    std::map<RowId, Note> notes;

    std::vector<RowId> find(const std::string& query) const {
        const auto wanted = text::foldedForSearch(query);
        std::vector<RowId> rows;
        for (const auto& [row, note] : notes) {
            if (text::foldedForSearch(note.title).find(wanted) != std::string::npos ||
                text::foldedForSearch(note.content).find(wanted) != std::string::npos) {
                rows.push_back(row);
            }
        }
        std::stable_sort(rows.begin(), rows.end(), [this](RowId a, RowId b) {
            return notes.at(a).modifiedAt > notes.at(b).modifiedAt;
        });
        return rows;
    }
};

}  // namespace

TEST(SearchIndex, FindsTitleAndContentNewestFirst) {
    TestLibrary library;
    library.add("# Kraków\nwieża", 10);
    library.add("# Łódź\nulica", 30);
    library.add("# Inne\nLODZ i krakow", 20);
    auto& index = library->searchIndex;
    fill(index);
    ASSERT_TRUE(index.isReady());
    const auto titles = [&](const char* query) {
        std::vector<std::string> found;
        for (const RowId row : all(*index.search(query), 10, 1s)) {
            found.push_back(library->listing.summary(row)->title);
        }
        return found;
    };
    EXPECT_THAT(titles("łódź"), ElementsAre("Łódź", "Inne"));
    EXPECT_THAT(titles("KRAKÓW"), ElementsAre("Inne", "Kraków"));
    EXPECT_THAT(titles("kraków\nw"), ElementsAre("Kraków"));
    EXPECT_THAT(titles("krakówwie"), IsEmpty());  // nothing reaches from one note into another
    EXPECT_EQ(titles("").size(), 3U);
}

TEST(SearchIndex, NothingReachesFromTheTitleIntoTheContent) {
    TestLibrary library;
    auto note = noteFrom("def");
    note.title = "abc";
    library->notes.create(note);
    fill(library->searchIndex);
    EXPECT_EQ(all(*library->searchIndex.search("abc"), 9, 1s).size(), 1U);
    EXPECT_EQ(all(*library->searchIndex.search("def"), 9, 1s).size(), 1U);
    for (const char* query : {"cd", "abcdef",
                              "c\xFF"
                              "d",
                              "abc\ndef"}) {
        EXPECT_THAT(all(*library->searchIndex.search(query), 9, 1s), IsEmpty()) << query;
    }
}

TEST(SearchIndex, AChangeEndsASweep) {
    TestLibrary library;
    for (int i = 0; i < 5; ++i)
        library.add("common " + std::to_string(i), i);
    fill(library->searchIndex);
    const auto& index = library->searchIndex;
    for (const bool isIndexed : {true, false}) {
        const auto sweep = isIndexed ? index.search("common") : index.storeScan("common");
        EXPECT_EQ(sweep->next(2, 1s).size(), 2U);
        EXPECT_FALSE(sweep->isFinished() || sweep->isStale());
        library.add("common again", isIndexed ? 100 : 200);
        EXPECT_TRUE(sweep->isStale());
        EXPECT_THAT(sweep->next(2, 1s), IsEmpty());
        EXPECT_TRUE(sweep->isFinished());
    }
}

TEST(SearchIndex, AnswersAsAPlainScanOfTheStoreAfterAnyEdits) {
    TestLibrary library;
    std::mt19937 random(17);
    const std::vector<std::string> words = {"zażółć", "gęślą", "JAŹŃ", "kot", "Kot",
                                            "a",      "b ",    "\n",   "ab"};
    std::vector<Uuid> ids;
    const auto someText = [&] {
        std::string content;
        for (std::size_t i = random() % 8; i > 0; --i)
            content += words[random() % words.size()];
        return content;
    };
    const auto compare = [&] {
        for (const char* query : {"kot", "ab", "zazolc", "a\n", "nowhere"}) {
            std::vector<RowId> plain;
            for (const auto& note : library->notes.search(query)) {
                plain.push_back(*library->listing.rowOf(note.id));
            }
            ASSERT_EQ(all(*library->searchIndex.search(query), 1 + random() % 5, 1s), plain);
            ASSERT_EQ(all(*library->searchIndex.storeScan(query), 3, 0ms), plain);
        }
    };
    for (int round = 0; round < 400; ++round) {
        const auto id = ids.empty() ? Uuid{} : ids[random() % ids.size()];
        switch (random() % 6) {
            case 0:
            case 1:
                ids.push_back(library.add(someText(), random() % 20).id);
                break;
            case 2:
                if (auto note = library->notes.fetchNote(id)) {
                    note->content = someText();
                    note->modifiedAt = Date::fromSeconds(random() % 20);
                    library->notes.update(*note);
                }
                break;
            case 3:
                library->notes.moveToTrash(id);
                break;
            case 4:
                library->notes.restoreFromTrash(id);
                break;
            case 5:
                if (round % 3 == 0) library->notes.deletePermanently(id);
                break;
        }
        // Edits come before, amid and after the filling of the index.
        if (round > 200) library->searchIndex.work(0ms);
        if (round % 50 == 0) compare();
    }
    fill(library->searchIndex);
    compare();
}

TEST(SearchIndex, TidyingChangesNoAnswer) {
    TestLibrary library;
    auto& index = library->searchIndex;
    fill(index);
    PlainNotes plain;
    std::mt19937 random(23);
    const std::string padding(20'000, 'x');
    for (int round = 0; round < 1000; ++round) {
        const RowId row = 1 + static_cast<RowId>(random() % 400);
        if (random() % 8 == 0) {
            plain.notes.erase(row);
            index.noteRemoved(row);
        } else {
            // Texts from a line to chunks of their own.
            std::string content = std::to_string(random() % 10) + "!" + std::to_string(round);
            if (random() % 3 == 0) content += padding;
            if (random() % 300 == 0) content += std::string(IndexChunk::kLargeNote, 'y');
            const auto date = static_cast<std::int64_t>(random() % 1000);
            plain.notes[row] = {"t" + std::to_string(row % 7), content, date};
            index.noteChanged(row, plain.notes[row].title, content, Date{date});
        }
        index.work(0ms);
        if (round % 100 == 99) {
            // A sweep lives through tidying: only changes of notes end it.
            for (const char* query : {"3!", "t5", "xy", "!1"}) {
                const auto sweep = index.search(query);
                std::vector<RowId> rows;
                while (!sweep->isFinished()) {
                    const auto hits = sweep->next(7, 0ms);
                    rows.insert(rows.end(), hits.begin(), hits.end());
                    index.work(0ms);
                }
                ASSERT_EQ(rows, plain.find(query)) << query << " in round " << round;
            }
        }
    }
    fill(index);
    EXPECT_EQ(all(*index.search("4!"), 1000, 1s), plain.find("4!"));
}

TEST(SearchIndex, WhatIsBeingTidiedAwayIsNotFound) {
    TestLibrary library;
    auto& index = library->searchIndex;
    std::vector<Note> notes;
    for (int i = 0; i < 300; ++i)
        notes.push_back(library.add("old " + std::to_string(i)));
    fill(index);
    for (const auto& note : notes)
        index.noteRemoved(library->listing.rowOf(note.id).value());
    do {
        EXPECT_THAT(all(*index.search("old"), 1000, 1s), IsEmpty());
    } while (index.work(0ms));
}

TEST(SearchIndex, ReadsALargeNoteInPieces) {
    TestLibrary library;
    std::string content = "# Large\n";
    while (content.size() < 3'000'000)
        content += "zażółć gęślą jaźń ";
    content += "the very END";
    library.add(content);
    library.add("# Small", 500);
    SearchIndex index(library.controller().viewContext());
    int slices = 0;
    while (!index.isReady()) {
        index.work(0ms);
        ++slices;
    }
    EXPECT_GT(slices, 10);
    EXPECT_EQ(all(*index.search("very end"), 9, 1s).size(), 1U);
    EXPECT_EQ(all(*index.search("jazn zazolc"), 9, 1s).size(), 1U);
    EXPECT_THAT(all(*index.search("\uFFFD"), 9, 1s), IsEmpty());  // no character cut in two
}

}  // namespace corvel
