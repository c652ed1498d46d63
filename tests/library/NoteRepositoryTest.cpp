#include "library/DerivedRows.h"
#include "library/NoteRepository.h"
#include "support/FullDisk.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> titlesOf(const std::vector<Note>& notes) {
    std::vector<std::string> titles;
    for (const Note& note : notes) {
        titles.push_back(note.title);
    }
    return titles;
}

TEST(NoteRepository, ARecordComesBackAsItWasStored) {
    TestLibrary library;
    const Folder folder = library->folders.createFolder("Praca", std::nullopt);
    Note note = noteFrom("# Zażółć \xF0\x9F\xA6\x86\nline\twith #tag/sub");
    note.content.push_back('\0');
    note.content += "after NUL";
    note.isPinned = true;
    note.isTrashed = true;
    note.trashedAt = Date{1234567};
    note.syncStatus = SyncStatus::conflict;
    note.folderIDs = {folder.id};
    note.sourceFilePath = "/tmp/a.md";
    note.bookmarkData = std::vector<std::uint8_t>{0, 1, 255};
    library->notes.create(note);
    library.reopen();

    Note stored = library.stored(note.id);
    EXPECT_EQ(stored.wordCount, 7);
    EXPECT_EQ(pathsOf(stored), (std::vector<std::string>{"tag", "tag/sub"}));
    stored.wordCount = 0;
    stored.tags.clear();
    EXPECT_EQ(stored, note);
    EXPECT_EQ(library->notes.fetchNoteBySourceFile("/tmp/a.md")->id, note.id);
    EXPECT_FALSE(library->notes.fetchNoteBySourceFile("/tmp/b.md").has_value());
}

TEST(NoteRepository, UpdateWritesWhatAnEditorMayChangeAndNothingElse) {
    TestLibrary library;
    const Folder folder = library->folders.createFolder("A", std::nullopt);
    const Note original = library.add("one #old");
    library->folders.addNoteToFolder(original.id, folder.id);
    library->notes.togglePin(original.id);

    Note edited = original;
    edited.content = "two words #new";
    edited.title = "Own title";
    edited.modifiedAt = Date::fromSeconds(77);
    edited.createdAt = Date::fromSeconds(1);
    edited.isPinned = false;
    edited.isArchived = true;
    edited.syncStatus = SyncStatus::synced;
    edited.folderIDs.clear();
    library->notes.update(edited);

    const Note stored = library.stored(original.id);
    EXPECT_EQ(stored.content, "two words #new");
    EXPECT_EQ(stored.title, "Own title");
    EXPECT_EQ(stored.modifiedAt, Date::fromSeconds(77));
    EXPECT_EQ(stored.createdAt, original.createdAt);
    EXPECT_EQ(stored.wordCount, 3);
    EXPECT_EQ(stored.syncStatus, SyncStatus::pending);
    EXPECT_TRUE(stored.isPinned);
    EXPECT_FALSE(stored.isArchived);
    EXPECT_THAT(stored.folderIDs, ElementsAre(folder.id));
    EXPECT_THAT(pathsOf(stored), ElementsAre("new"));
}

TEST(NoteRepository, TagsAreAttachedWithTheirPathAndOutliveTheirLastNote) {
    TestLibrary library;
    Note note = noteFrom("text #a/b/c and `#code` and\n```\n#fenced\n```\nword#none");
    note.tags = {Tag{Uuid::random(), "tra", "ex/tra", {}}};
    library->notes.create(note);
    const Note stored = library.stored(note.id);
    EXPECT_THAT(pathsOf(stored), ElementsAre("a", "a/b", "a/b/c", "ex", "ex/tra"));
    const auto root = std::find_if(stored.tags.begin(), stored.tags.end(),
                                   [](const Tag& tag) { return tag.fullPath == "a"; });
    ASSERT_EQ(root->children.size(), 1U);
    EXPECT_EQ(root->children[0].children.at(0).fullPath, "a/b/c");

    Note edited = stored;
    edited.content = "nothing";
    library->notes.update(edited);
    EXPECT_THAT(pathsOf(library.stored(note.id)), IsEmpty());
    auto query = library.controller().viewContext().database().query("SELECT count(*) FROM tag");
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.integer(0), 5);
    EXPECT_THAT(library->listing.tagPaths(), IsEmpty());
}

TEST(NoteRepository, PinArchiveAndTrashLeaveTheDateOfTheTextAlone) {
    TestLibrary library;
    const Note note = library.add("text");
    library->notes.togglePin(note.id);
    library->notes.toggleArchive(note.id);
    library->notes.moveToTrash(note.id);
    Note stored = library.stored(note.id);
    EXPECT_TRUE(stored.isPinned && stored.isArchived && stored.isTrashed);
    EXPECT_TRUE(stored.trashedAt.has_value());
    EXPECT_EQ(stored.modifiedAt, note.modifiedAt);
    library->notes.restoreFromTrash(note.id);
    library->notes.togglePin(note.id);
    stored = library.stored(note.id);
    EXPECT_FALSE(stored.isPinned || stored.isTrashed || stored.trashedAt.has_value());
}

TEST(NoteRepository, AnUnknownNoteIsNoError) {
    TestLibrary library;
    const Uuid nobody = Uuid::random();
    library->notes.togglePin(nobody);
    library->notes.moveToTrash(nobody);
    library->notes.deletePermanently(nobody);
    library->notes.update(noteFrom("never created"));
    library->folders.addNoteToFolder(nobody, nobody);
    EXPECT_EQ(library->listing.counts(), NoteCounts{});
}

TEST(NoteRepository, SearchIgnoresCaseAndDiacriticsAndTheTrashOnly) {
    TestLibrary library;
    library.add("a cafe in Łódź", 1);
    const Note archived = library.add("# CAFÉ", 3);
    const Note trashed = library.add("café gone", 2);
    library->notes.toggleArchive(archived.id);
    library->notes.moveToTrash(trashed.id);
    EXPECT_THAT(titlesOf(library->notes.search("CAFÉ")), ElementsAre("CAFÉ", "a cafe in Łódź"));
    EXPECT_THAT(titlesOf(library->notes.search("lodz")), ElementsAre("a cafe in Łódź"));
    EXPECT_THAT(titlesOf(library->notes.search("nowhere")), IsEmpty());
}

TEST(NoteRepository, DeletingANoteTakesItsAttachmentsAndTheirFiles) {
    TestLibrary library;
    const Note note = library.add("with picture");
    const Attachment large{
        Uuid::random(), "a.png", "image/png", std::vector<std::uint8_t>(200'000, 1), {}};
    const Attachment small{
        Uuid::random(), "b.png", "image/png", {1, 2}, std::vector<std::uint8_t>{3}};
    library->attachments.create(large, note.id);
    library->attachments.create(small, note.id);
    library.reopen();
    EXPECT_THAT(library->attachments.fetchAttachments(note.id), ElementsAre(large, small));
    library->notes.deletePermanently(note.id);
    EXPECT_FALSE(library->attachments.fetchAttachment(small.id).has_value());
    EXPECT_TRUE(std::filesystem::is_empty(library.folder() / "qnoCorvel_files"));
}

TEST(NoteRepository, KeepsTheTextWhenTheDiskFillsDuringSave) {
    FullDisk::makePossible();
    TestLibrary library;
    Note note = library.add("first");
    note.content = "typed while the disk was full";
    {
        const FullDisk fullDisk;
        EXPECT_THROW(library->notes.update(note), StoreError);
        EXPECT_EQ(library.stored(note.id).content, note.content);
    }
    library->notes.create(noteFrom("another"));
    library.reopen();
    EXPECT_EQ(library.stored(note.id).content, note.content);
}

TEST(NoteRepository, HostileSizesAndNames) {
    TestLibrary library;
    const std::string huge(50 * 1024 * 1024, 'w');
    const Note note = library.add(huge);
    EXPECT_EQ(library.stored(note.id).content.size(), huge.size());
    const std::string name =
        std::string(10'000, 'n') + " \xD8\xA7\xD9\x84 \xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x92\xBB";
    const Folder folder = library->folders.createFolder(name, std::nullopt);
    EXPECT_EQ(library->folders.fetchFolder(folder.id)->name, name);
}

// Everything kept beside the records must be what the records alone would give.
TEST(DerivedRows, ARebuildGivesTheSameRowsAfterAnyChanges) {
    TestLibrary library;
    const Folder outer = library->folders.createFolder("outer", std::nullopt);
    const Folder inner = library->folders.createFolder("inner", outer.id);
    std::vector<Note> notes;
    for (int i = 0; i < 30; ++i) {
        notes.push_back(library.add(
            "# Note\ntext " + std::to_string(i) + " #t" + std::to_string(i % 5) + "/x", i));
    }
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const Uuid& id = notes[i].id;
        if (i % 2 == 0) library->folders.addNoteToFolder(id, outer.id);
        if (i % 3 == 0) library->folders.moveNoteToFolder(id, inner.id);
        if (i % 4 == 0) library->notes.togglePin(id);
        if (i % 5 == 0) library->notes.toggleArchive(id);
        if (i % 7 == 0) library->notes.moveToTrash(id);
        if (i % 11 == 0) library->folders.removeNoteFromAllFolders(id);
        if (i % 13 == 0) library->notes.deletePermanently(id);
        if (i % 14 == 0) library->notes.restoreFromTrash(id);
        Note edited = notes[i];
        edited.content += "\nmore #t9 #t" + std::to_string(i % 6);
        edited.bookmarkData = std::vector<std::uint8_t>{1};
        edited.modifiedAt = Date::fromSeconds(static_cast<std::int64_t>(1000 - i));
        if (i % 8 == 1) library->notes.update(edited);
    }
    library->folders.deleteFolder(inner.id);
    const std::string kept = dumpOfStore(library.controller());
    derivedRows::rebuild(library.controller().viewContext(), derivedRows::WordCounts::recount);
    EXPECT_EQ(dumpOfStore(library.controller()), kept);
}

TEST(DerivedRows, ARebuildThatEndsEarlyLeavesTheRowsAndBeginsAnew) {
    TestLibrary library;
    for (int i = 0; i < 30; ++i)
        library.add("# T" + std::to_string(i) + "\nwords #a/b" + std::to_string(i));
    const std::string whole = dumpOfStore(library.controller());
    auto& context = library.controller().viewContext();
    context.database().execute("UPDATE counter SET value=-1 WHERE name='derivedVersion'");
    ASSERT_TRUE(derivedRows::isRebuildDue(context));
    {
        derivedRows::Rebuild work(context, derivedRows::WordCounts::recount);
        EXPECT_TRUE(work.step(std::chrono::milliseconds(0)));
        EXPECT_EQ(work.doneCount(), 1U);
        EXPECT_EQ(work.noteCount(), 30U);
    }
    EXPECT_TRUE(derivedRows::isRebuildDue(context));
    derivedRows::Rebuild again(context, derivedRows::WordCounts::recount);
    int steps = 0;
    while (again.step(std::chrono::milliseconds(0)))
        ++steps;
    EXPECT_GE(steps, 29);
    EXPECT_FALSE(derivedRows::isRebuildDue(context));
    EXPECT_EQ(dumpOfStore(library.controller()), whole);
}

TEST(DerivedRows, AnOldStoreIsDerivedWhenItIsOpened) {
    TestLibrary library;
    library.add("# T\nwords of #some/tag");
    library.controller().viewContext().database().execute(
        "DELETE FROM counter; UPDATE note SET wordCount=0, excerpt='';"
        "UPDATE noteTag SET isInText=0; DELETE FROM tagList; UPDATE tag SET listedCount=0;");
    library.reopen();
    EXPECT_EQ(library->listing.counts().allNotes, 1);
    EXPECT_THAT(library->listing.tagPaths(), ElementsAre("some", "some/tag"));
    EXPECT_THAT(library.titles(SidebarFilter::tag("some")), ElementsAre("T"));
}

TEST(DerivedRows, TheSampleNotesKeepTheirCountsAndHaveTagsInTheTreeOnly) {
    PersistenceController controller(PersistenceController::Storage::inMemory);
    const Library library(controller);
    EXPECT_THAT(library.listing.tagPaths(),
                ElementsAre("markdown", "markdown/cheatsheet", "reference", "tags"));
    const auto notes = library.notes.fetchNotes({}, SortOption::modifiedDate);
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_EQ(notes[0].wordCount, 45);
    EXPECT_TRUE(notes[0].tags.empty());
    EXPECT_THAT(library.notes.fetchNotes(SidebarFilter::tag("tags"), SortOption::title), IsEmpty());
}

TEST(NoteRepository, ManyNotesAtOnceGiveTheRowsOfOneAfterTheOther) {
    std::vector<std::string> dumps;
    for (const bool isAtOnce : {false, true}) {
        TestLibrary library;
        library.add("# There before\n\n#work/plan");
        const auto folder = library->folders.createFolder("Folder", std::nullopt).id;
        std::vector<std::shared_ptr<const noteWriter::PreparedNote>> notes;
        for (int number = 0; number < 24; ++number) {
            Note note = noteFrom("# N\n\n#work/plan #t" + std::to_string(number % 5) + " #a/b/c");
            note.isPinned = number % 4 == 1;
            note.isArchived = number % 5 == 2;
            note.isTrashed = number % 6 == 3;
            if (number % 3 == 0) note.folderIDs = {folder};
            if (number % 7 == 0) note.tags = {Tag{Uuid::random(), "c", "kept/c", {}}};
            if (number % 8 == 0) note.bookmarkData = std::vector<std::uint8_t>{1};
            if (isAtOnce) {
                notes.push_back(std::make_shared<noteWriter::PreparedNote>(
                    noteWriter::PreparedNote{note, DerivedText::of(note.content)}));
            } else {
                library->notes.createUnsaved(note);
            }
        }
        if (isAtOnce) library->notes.createUnsaved(notes);
        library.controller().viewContext().save();
        dumps.push_back(dumpOfStore(library.controller()));
    }
    EXPECT_EQ(dumps[0], dumps[1]);
}

}  // namespace
}  // namespace corvel
