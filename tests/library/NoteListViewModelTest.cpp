#include "library/NoteListViewModel.h"
#include "library/Notifications.h"
#include "library/SidebarViewModel.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = SidebarFilter::Kind;

class NoteListViewModelTest : public testing::Test {
protected:
    NoteListViewModelTest() {
        list.signalSpliced().connect([this](const ListSplice& splice) {
            // A view that only follows the splices must end up with the same number of rows.
            ASSERT_LE(splice.position + splice.removed, m_followed);
            m_followed = m_followed - splice.removed + splice.added;
            ++splices;
        });
        list.reload();
    }

    std::vector<std::string> titles() const {
        std::vector<std::string> titles;
        for (std::size_t i = 0; i < list.size(); ++i) {
            titles.push_back(list.summaryAt(i)->title);
        }
        EXPECT_EQ(m_followed, list.size());
        return titles;
    }

    std::size_t m_followed = 0;
    int splices = 0;
    TestLibrary library;
    UserDefaults defaults{library.folder() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    NotificationCenter notifications;
    NoteListViewModel list{*library, notifications};
    SidebarViewModel sidebar{*library, texts, notifications};
};

TEST_F(NoteListViewModelTest, OpensWithTheFirstRowsAndReadsTheOthersSoonAfter) {
    constexpr std::size_t kNotes = 250;
    {
        ViewContext::Group group(library->controller.viewContext());
        for (std::size_t number = 0; number < kNotes; ++number) {
            library.add("note", static_cast<std::int64_t>(number));
        }
        group.commit();
    }
    NoteListViewModel opened{*library, notifications};
    std::size_t followed = 0;
    std::size_t told = 0;
    opened.signalSpliced().connect([&](const ListSplice& splice) {
        EXPECT_LE(splice.position + splice.removed, followed);
        followed = followed - splice.removed + splice.added;
        told = opened.noteCount();
    });
    opened.open();
    EXPECT_LT(opened.size(), kNotes);
    EXPECT_EQ(told, kNotes) << "the list's length is known at once";
    const auto first = opened.rowAt(0);
    ASSERT_TRUE(turnUntil([&] { return opened.size() == kNotes; }));
    EXPECT_EQ(followed, kNotes);
    EXPECT_EQ(opened.rowAt(0), first);

    opened.open();
    library.add("newest", kNotes + 1);
    EXPECT_EQ(opened.summaryAt(0)->title, "newest");
    EXPECT_EQ(opened.size(), kNotes + 1) << "a change does not meet half a list";
    opened.open();
    opened.setFilter({SidebarFilter::Kind::trash, {}, {}});
    opened.setFilter({});
    EXPECT_EQ(opened.size(), kNotes + 1) << "half a list is not kept for later";
    EXPECT_EQ(followed, opened.size());
}

TEST_F(NoteListViewModelTest, ChangesAreSplicedInPlace) {
    const Note a = library.add("a", 10);
    const Note b = library.add("b", 20);
    const Note c = library.add("c", 30);
    EXPECT_THAT(titles(), ElementsAre("c", "b", "a"));
    splices = 0;
    Note edited = a;
    edited.modifiedAt = Date::fromSeconds(25);
    library->notes.update(edited);
    EXPECT_THAT(titles(), ElementsAre("c", "a", "b"));
    EXPECT_EQ(splices, 2);
    edited.modifiedAt = Date::fromSeconds(26);
    library->notes.update(edited);
    EXPECT_EQ(splices, 2) << "a row that keeps its place is not spliced";
    list.togglePin({b.id});
    EXPECT_THAT(titles(), ElementsAre("b", "c", "a"));
    list.perform({c.id, NoteActionType::toggleArchive});
    EXPECT_THAT(titles(), ElementsAre("b", "a"));
    EXPECT_EQ(list.positionOf(a.id), 1U);
    EXPECT_FALSE(list.positionOf(c.id).has_value());
}

TEST_F(NoteListViewModelTest, PatchingGivesWhatReadingAnewGives) {
    std::mt19937 random(3);
    std::vector<Note> notes;
    list.setSortOption(SortOption::title);
    for (int i = 0; i < 200; ++i) {
        const auto pick = [&](std::size_t count) {
            return static_cast<std::size_t>(random() % count);
        };
        if (notes.empty() || pick(3) == 0) {
            notes.push_back(library.add("title " + std::to_string(pick(20)),
                                        static_cast<std::int64_t>(pick(50))));
        }
        const Uuid id = notes[pick(notes.size())].id;
        const auto action = pick(5);
        if (action == 0) list.togglePin({id});
        if (action == 1) list.moveToTrash({id});
        if (action == 2) list.restoreFromTrash({id});
        if (action == 3) list.toggleArchive({id});
        if (action == 4) list.moveToTrash({id, notes[pick(notes.size())].id});
        // The list of all notes is kept while another is shown, and must be as good as read anew.
        const auto filter = i % 7 < 4 ? SidebarFilter{} : SidebarFilter{Kind::archived, {}, {}};
        if (list.filter() != filter) list.setFilter(filter);
        ASSERT_THAT(titles(), library.titles(filter, SortOption::title)) << "after step " << i;
    }
}

TEST_F(NoteListViewModelTest, ANewNoteGoesToTheSelectedFolder) {
    const auto folder = sidebar.createFolder("f", std::nullopt);
    list.setFilter(SidebarFilter::folder(folder->id));
    std::optional<Uuid> created;
    list.signalCreated().connect([&](const Uuid& id) { created = id; });
    notifications.post(notifications::createNewNote);
    ASSERT_TRUE(created.has_value());
    EXPECT_EQ(list.positionOf(*created), 0U);
    EXPECT_THAT(library.stored(*created).folderIDs, ElementsAre(folder->id));
}

TEST_F(NoteListViewModelTest, SeveralNotesGetOneState) {
    const Note a = library.add("a");
    const Note b = library.add("b");
    list.togglePin({a.id});
    list.togglePin({a.id, b.id});
    EXPECT_TRUE(library.stored(a.id).isPinned && library.stored(b.id).isPinned);
    list.togglePin({a.id, b.id});
    EXPECT_FALSE(library.stored(a.id).isPinned || library.stored(b.id).isPinned);
    std::vector<Uuid> trashed;
    list.signalTrashed().connect([&](const std::vector<Uuid>& ids) { trashed = ids; });
    list.moveToTrash({a.id, b.id});
    EXPECT_THAT(titles(), IsEmpty());
    list.restoreFromTrash(trashed);
    EXPECT_EQ(list.size(), 2U);
}

TEST_F(NoteListViewModelTest, ASearchShowsHitsOfTheWholeLibraryNewestFirst) {
    for (int i = 0; i < 450; ++i) {
        library.add("common " + std::to_string(i), i);
    }
    const Note archived = library.add("RARE Źdźbło", 1000);
    list.toggleArchive({archived.id});
    list.setFilter({Kind::trash, {}, {}});
    list.setSearchQuery("common");
    ASSERT_TRUE(turnUntil([&] { return list.size() >= 200; }));
    EXPECT_EQ(list.summaryAt(0)->title, "common 449");
    list.showMore();
    ASSERT_TRUE(turnUntil([&] { return list.size() == 400; }));
    list.showMore();
    ASSERT_TRUE(turnUntil([&] { return list.size() == 450 && list.isSearchFinished(); }));
    list.setSearchQuery("zdzb");
    ASSERT_TRUE(turnUntil([&] { return list.isSearchFinished(); }));
    EXPECT_THAT(titles(), ElementsAre("RARE Źdźbło"));
    library.add("another źdźbło", 2000);
    ASSERT_TRUE(turnUntil([&] { return list.isSearchFinished() && list.size() == 2; }));
    list.setSearchQuery("");
    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(NoteListViewModelTest, AFailureIsOneLineAndTheListStays) {
    FullDisk::makePossible();
    TestLibrary full;
    const Note note = full.add("kept");
    NoteListViewModel fullList(*full, notifications);
    fullList.reload();
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        fullList.moveToTrash({note.id});
        const auto created = fullList.createNote();
        ASSERT_TRUE(created) << "it can be written in, and is saved with what is written";
        EXPECT_TRUE(fullList.positionOf(*created));
    }
    const auto printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed,
              "Error moving to trash: database or disk is full\n"
              "Error creating note: database or disk is full\n");
}

TEST_F(NoteListViewModelTest, TheSidebarFollowsNotesAndFolders) {
    sidebar.reload();
    int changes = 0;
    sidebar.signalChanged().connect([&] { ++changes; });
    const auto parent = sidebar.createFolder("p", std::nullopt);
    const auto child = sidebar.createFolder("c", parent->id);
    const Note note = library.add("text #x/y");
    ASSERT_TRUE(turnUntil([&] { return sidebar.allNotesCount == 1; }));
    EXPECT_EQ(sidebar.tagTree.at(0).children.at(0).fullPath, "x/y");
    EXPECT_FALSE(sidebar.dropNeedsQuestion({note.id}, child->id));
    sidebar.addNotes({note.id}, child->id);
    EXPECT_FALSE(sidebar.dropNeedsQuestion({note.id}, child->id)) << "only in the target itself";
    EXPECT_TRUE(sidebar.dropNeedsQuestion({note.id}, parent->id));
    EXPECT_EQ(sidebar.folders.at(0).children.at(0).noteCount, 1);
    EXPECT_EQ(sidebar.unfiledCount, 0);
    sidebar.moveNotes({note.id}, parent->id);
    EXPECT_THAT(sidebar.folderIDsOf(note.id), ElementsAre(parent->id));
    sidebar.renameFolder(parent->id, "ź");
    sidebar.createFolder("ó", std::nullopt);
    sidebar.createFolder("p", std::nullopt);
    std::vector<std::string> paths;
    for (const auto& folder : sidebar.allFolders())
        paths.push_back(folder.path);
    EXPECT_THAT(paths, ElementsAre("ó", "p", "ź", "ź / c"));
    sidebar.deleteFolder(parent->id);
    EXPECT_EQ(sidebar.unfiledCount, 1);
    const int before = changes;
    sidebar.reload();
    EXPECT_EQ(changes, before) << "nothing differs, nobody is told";
}

TEST_F(NoteListViewModelTest, ASearchBegunAnewKeepsItsHitsUntilItHasThemAgain) {
    const Note hit = library.add("# Hit\n\nneedle", 1);
    const Note other = library.add("# Other hit\n\nneedle", 2);
    // Newest, so read first; folding it alone takes longer than a slice.
    const Note haystack = library.add("# Haystack\n" + std::string(30'000'000, 'x'), 3);
    list.setSearchQuery("needle");
    ASSERT_TRUE(turnUntil([&] { return list.isSearchFinished(); }));
    ASSERT_THAT(titles(), ElementsAre("Other hit", "Hit"));
    library->notes.togglePin(haystack.id);
    EXPECT_FALSE(list.isSearchFinished());
    EXPECT_THAT(titles(), ElementsAre("Other hit", "Hit"));
    library->notes.moveToTrash(other.id);
    EXPECT_THAT(titles(), ElementsAre("Hit"));
    library->notes.restoreFromTrash(other.id);
    ASSERT_TRUE(turnUntil([&] { return list.isSearchFinished(); }));
    EXPECT_THAT(titles(), ElementsAre("Other hit", "Hit"));
    EXPECT_EQ(list.positionOf(hit.id), 1U);
}

TEST(NoteList, NotesThatAFullDiskBringsBackHaveTheirAttachments) {
    FullDisk::makePossible();
    TestLibrary library;
    NotificationCenter notifications;
    NoteListViewModel list(*library, notifications);
    const Note one = library.add("# One");
    const Note two = library.add("# Two");
    const Uuid image = Uuid::random();
    library->attachments.create(
        {image, "a.png", "image/png", std::vector<std::uint8_t>(200'000), {}}, one.id);
    testing::internal::CaptureStdout();
    {
        const FullDisk full;
        list.deletePermanently({one.id, two.id});
    }
    testing::internal::GetCapturedStdout();
    library.reopen();
    ASSERT_TRUE(library->notes.fetchNote(one.id)) << "the program ended before it could be saved";
    EXPECT_EQ(library->attachments.fetchAttachment(image)->data.size(), 200'000U);
}

}  // namespace
}  // namespace corvel
