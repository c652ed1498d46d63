#include "library/NoteListing.h"
#include "library/TagTree.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = SidebarFilter::Kind;

SidebarFilter fixed(Kind kind) {
    return {kind, {}, {}};
}

TEST(NoteListing, EachFilterListsItsOwnNotes) {
    TestLibrary library;
    const Folder parent = library->folders.createFolder("parent", std::nullopt);
    const Folder child = library->folders.createFolder("child", parent.id);
    const Note filed = library.add("filed #proj", 1);
    const Note local = library.add("local #project", 2);
    const Note archived = library.add("archived #proj", 3);
    const Note both = library.add("both", 4);
    library.add("plain #a/b", 5);
    library->folders.addNoteToFolder(filed.id, child.id);
    Note linked = local;
    linked.bookmarkData = std::vector<std::uint8_t>{1};
    library->notes.update(linked);
    library->notes.toggleArchive(archived.id);
    library->notes.toggleArchive(both.id);
    library->notes.moveToTrash(both.id);

    EXPECT_THAT(library.titles(fixed(Kind::allNotes)),
                ElementsAre("plain #a/b", "local #project", "filed #proj"));
    EXPECT_THAT(library.titles(fixed(Kind::unfiled)), ElementsAre("plain #a/b", "local #project"));
    EXPECT_THAT(library.titles(fixed(Kind::localFiles)), ElementsAre("local #project"));
    EXPECT_THAT(library.titles(fixed(Kind::archived)), ElementsAre("archived #proj"));
    EXPECT_THAT(library.titles(fixed(Kind::trash)), ElementsAre("both"));
    EXPECT_THAT(library.titles(SidebarFilter::folder(child.id)), ElementsAre("filed #proj"));
    EXPECT_THAT(library.titles(SidebarFilter::folder(parent.id)), IsEmpty());
    EXPECT_THAT(library.titles(SidebarFilter::tag("proj")),
                ElementsAre("local #project", "filed #proj"));
    EXPECT_THAT(library.titles(SidebarFilter::tag("a")), ElementsAre("plain #a/b"));
    EXPECT_EQ(library->listing.counts(), (NoteCounts{3, 2, 1, 1, 1}));
    EXPECT_EQ(library->folders.fetchFolder(child.id)->noteCount, 1);
    EXPECT_THAT(library->listing.tagPaths(), ElementsAre("a", "a/b", "proj", "project"));

    library->folders.removeNoteFromAllFolders(filed.id);
    EXPECT_THAT(library.titles(fixed(Kind::unfiled)),
                ElementsAre("plain #a/b", "local #project", "filed #proj"));
}

TEST(NoteListing, PinnedFirstThenTheChosenOrder) {
    TestLibrary library;
    const Note pinned = library.add("cherry", 1);
    library.add("banana one two three", 30);
    library.add("apple one", 20);
    library->notes.togglePin(pinned.id);
    const auto order = [&](SortOption sort) { return library.titles({}, sort); };
    EXPECT_THAT(order(SortOption::modifiedDate),
                ElementsAre("cherry", "banana one two three", "apple one"));
    EXPECT_THAT(order(SortOption::createdDate),
                ElementsAre("cherry", "banana one two three", "apple one"));
    EXPECT_THAT(order(SortOption::title),
                ElementsAre("cherry", "apple one", "banana one two three"));
    EXPECT_THAT(order(SortOption::wordCount),
                ElementsAre("cherry", "banana one two three", "apple one"));
}

// The list of a tag merges many ordered runs; it must be what sorting all its notes would give.
TEST(NoteListing, RandomLibrariesListTheSameByEveryWay) {
    std::mt19937 random(7);
    TestLibrary library;
    ViewContext::Group group(library.controller().viewContext());
    for (int i = 0; i < 300; ++i) {
        const auto pick = [&](int count) {
            return std::to_string(random() % static_cast<unsigned>(count));
        };
        const Note note =
            library.add("n #t" + pick(12) + "/s" + pick(3) + " #u" + pick(2), random() % 40);
        if (random() % 9 == 0) library->notes.togglePin(note.id);
        if (random() % 7 == 0) library->notes.toggleArchive(note.id);
    }
    group.commit();
    for (const auto& filter : {SidebarFilter{}, SidebarFilter::tag("t1"), SidebarFilter::tag("t"),
                               SidebarFilter::tag("")}) {
        for (const auto sort : kSortOptions) {
            const auto rows = library->listing.rows(filter, sort);
            const auto first = library->listing.rows(filter, sort, 10);
            ASSERT_TRUE(std::equal(first.begin(), first.end(), rows.begin()));
            std::vector<RowId> placed;
            for (const RowId row : library->listing.rows({}, SortOption::title)) {
                if (!library->listing.contains(filter, row)) continue;
                const auto at = library->listing.positionFor(placed, row, sort);
                placed.insert(placed.begin() + static_cast<std::ptrdiff_t>(at), row);
            }
            EXPECT_EQ(placed, rows) << filter.toString() << " " << rawValue(sort);
        }
    }
}

TEST(NoteListing, ARowShowsTitleExcerptAndLongestTags) {
    TestLibrary library;
    const Note note = library.add("# Plan\n\nScope and **dates**. #work/plan #work/x #home #zoo\n");
    const auto row = library->listing.rowOf(note.id);
    const auto summary = library->listing.summary(row.value()).value();
    EXPECT_EQ(summary.title, "Plan");
    EXPECT_TRUE(summary.excerpt.starts_with("Scope and dates.")) << summary.excerpt;
    EXPECT_THAT(summary.tagPaths, ElementsAre("home", "work/plan", "work/x"));
    EXPECT_FALSE(library->listing.summary(999).has_value());
}

TEST(FolderRepository, NewFoldersGoLastAndDeletingKeepsNotes) {
    TestLibrary library;
    auto& folders = library->folders;
    const Folder a = folders.createFolder("a", std::nullopt);
    const Folder b = folders.createFolder("b", std::nullopt);
    const Folder c = folders.createFolder("", std::nullopt);
    EXPECT_EQ(a.sortOrder, 0);
    EXPECT_EQ(c.sortOrder, 2);
    const Folder inner = folders.createFolder("inner", b.id);
    EXPECT_EQ(inner.parentID, b.id);
    const Note note = library.add("kept");
    folders.addNoteToFolder(note.id, inner.id);
    folders.addNoteToFolder(note.id, a.id);
    folders.deleteFolder(b.id);
    EXPECT_THAT(library.stored(note.id).folderIDs, ElementsAre(a.id));
    EXPECT_EQ(folders.createFolder("d", std::nullopt).sortOrder, 2);
    EXPECT_EQ(folders.fetchRootFolders().size(), 3U);
    folders.renameFolder(a.id, " a b ");
    EXPECT_EQ(folders.fetchFolder(a.id)->name, " a b ");
    EXPECT_FALSE(folders.createFolder("orphan", Uuid::random()).parentID.has_value());
}

TEST(FolderRepository, MovingLeavesOneFolderAddingKeepsAll) {
    TestLibrary library;
    auto& folders = library->folders;
    std::vector<Uuid> ids;
    for (int i = 0; i < 4; ++i) {
        ids.push_back(folders.createFolder(std::to_string(i), std::nullopt).id);
    }
    const Note note = library.add("text");
    for (int i = 0; i < 3; ++i) {
        folders.addNoteToFolder(note.id, ids[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(folders.folderIDsOf(note.id).size(), 3U);
    folders.moveNoteToFolder(note.id, ids[3]);
    EXPECT_THAT(folders.folderIDsOf(note.id), ElementsAre(ids[3]));
    folders.moveNoteToFolder(note.id, Uuid::random());
    EXPECT_THAT(folders.folderIDsOf(note.id), ElementsAre(ids[3]));
}

TEST(TagTree, PathsThatShareAPrefixShareOneRoot) {
    const auto roots = buildTagTree({"zebra", "a/c", "a/b", "a", "łąka", "lato"}, "pl");
    ASSERT_EQ(roots.size(), 4U);
    EXPECT_EQ(roots[0].fullPath, "a");
    ASSERT_EQ(roots[0].children.size(), 2U);
    EXPECT_EQ(roots[0].children[0].fullPath, "a/b");
    EXPECT_EQ(roots[1].name, "lato");
    EXPECT_EQ(roots[2].name, "łąka");
    EXPECT_EQ(roots[3].name, "zebra");
}

TEST(SidebarFilter, ComesBackFromItsText) {
    const Uuid id = Uuid::random();
    for (const auto& filter : {SidebarFilter{}, fixed(Kind::trash), SidebarFilter::folder(id),
                               SidebarFilter::tag("a:b/c")}) {
        EXPECT_EQ(SidebarFilter::fromString(filter.toString()), filter);
    }
    EXPECT_EQ(SidebarFilter::fromString("folder:nonsense"), SidebarFilter{});
    EXPECT_EQ(SidebarFilter::fromString(""), SidebarFilter{});
}

}  // namespace
}  // namespace corvel
