#include "library/LocalFileNotes.h"
#include "library/NoteListViewModel.h"
#include "library/Notifications.h"
#include "support/OtherUser.h"
#include "support/TestLibrary.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

namespace corvel {
namespace {

namespace fs = std::filesystem;

class LocalFileNotesTest : public testing::Test {
protected:
    LocalFileNotesTest() { fs::permissions(folder.path(), fs::perms(0755)); }

    Uuid linked(const fs::path& path) { return list.createLocalFileNote(path).noteID.value(); }
    std::optional<Uuid> noteThatHas(const fs::path& path) {
        const auto outcome = list.createLocalFileNote(path);
        if (!outcome.refusal || !outcome.refusal->otherNote()) return std::nullopt;
        EXPECT_EQ(outcome.refusal->fault(), LinkFault::alreadyLinked);
        return outcome.refusal->otherNote()->id;
    }
    std::optional<LinkFault> faultOf(const fs::path& path) {
        const auto outcome = list.createLocalFileNote(path);
        return outcome.refusal ? std::optional(outcome.refusal->fault()) : std::nullopt;
    }
    static std::string bytesOf(const fs::path& path) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return bytes.str();
    }

    TemporaryFolder folder;
    TestLibrary library;
    NotificationCenter notifications;
    NoteListViewModel list{*library, notifications};
};

TEST_F(LocalFileNotesTest, AFileBecomesANoteWithItsTextNameAndDates) {
    const auto path = folder.write("plan.md", "\xEF\xBB\xBF# Plan\r\n\r\n#work\r\n");
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(48));
    const Note note = library.stored(linked(path));
    EXPECT_EQ(note.content, "# Plan\n\n#work\n");
    EXPECT_EQ(note.title, "Plan");
    EXPECT_EQ(note.sourceFilePath, path.string());
    EXPECT_EQ(pathsOf(note), std::vector<std::string>{"work"});
    EXPECT_LT(note.modifiedAt, Date::now().plusSeconds(-47 * 3600));
    EXPECT_LE(note.createdAt, note.modifiedAt);
    const auto bookmark = Bookmark::decode(note.bookmarkData.value());
    ASSERT_TRUE(bookmark);
    EXPECT_EQ(bookmark->fileHash, hashOf(bytesOf(path)));
    EXPECT_EQ(library->listing.counts().localFiles, 1);
}

TEST_F(LocalFileNotesTest, OneFileHasOneNoteWhicheverWayLeadsToIt) {
    const auto path = folder.write("caf\xE9.md", "text");
    const auto id = linked(path);
    fs::create_symlink(path, folder.path() / "link.md");
    fs::create_directory_symlink(folder.path(), folder.path() / "self");
    fs::create_hard_link(path, folder.path() / "hard.md");
    EXPECT_EQ(noteThatHas(path), id);
    EXPECT_EQ(noteThatHas(folder.path() / "link.md"), id);
    EXPECT_EQ(noteThatHas(folder.path() / "self" / path.filename()), id);
    EXPECT_EQ(noteThatHas(folder.path() / "hard.md"), id);

    const Note other = library.add("another");
    const auto upgrade = list.upgradeToLocalFile(other.id, folder.path() / "link.md");
    ASSERT_TRUE(upgrade.refusal && upgrade.refusal->otherNote());
    EXPECT_EQ(upgrade.refusal->otherNote()->title, "text");
    EXPECT_EQ(bytesOf(path), "text") << "what is refused writes nothing";
    EXPECT_FALSE(library.stored(other.id).bookmarkData);
}

TEST_F(LocalFileNotesTest, AMovedFileIsKnownAndItsNoteLearnsTheNewPlace) {
    const auto path = folder.write("old.md", "text");
    const auto id = linked(path);
    fs::create_directory(folder.path() / "far");
    fs::rename(path, folder.path() / "far/new.md");
    EXPECT_EQ(list.findOrCreateLocalFileNote(folder.path() / "far/new.md").noteID, id);
    EXPECT_EQ(library.stored(id).sourceFilePath, (folder.path() / "far/new.md").string());
    EXPECT_EQ(Bookmark::decode(*library.stored(id).bookmarkData)->path,
              folder.path() / "far/new.md");
    // Its old name may be given to another file then.
    folder.write("old.md", "other");
    EXPECT_NE(list.findOrCreateLocalFileNote(path).noteID, id);
}

TEST_F(LocalFileNotesTest, OpeningAFileBringsItsNoteBackFromTheTrash) {
    const auto path = folder.write("a.md", "text");
    const auto id = linked(path);
    list.moveToTrash({id});
    std::optional<Uuid> opened;
    list.signalLocalFileOpened().connect(
        [&](const LinkOutcome& outcome) { opened = outcome.noteID; });
    notifications.post(notifications::openLocalFile, path);
    EXPECT_EQ(opened, id);
    EXPECT_FALSE(library.stored(id).isTrashed);
    list.deletePermanently({id});
    EXPECT_EQ(bytesOf(path), "text") << "the file outlives its note";
}

TEST_F(LocalFileNotesTest, WhatIsNoTextFileIsRefusedAndLeavesNoNote) {
    using namespace std::string_literals;
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0666), 0);
    fs::create_symlink("loop", folder.path() / "loop");
    const auto large = folder.write("large.md", "");
    fs::resize_file(large, 100'000'000);
    const auto secret = folder.write("secret.md", "x");
    fs::permissions(secret, fs::perms(0));
    EXPECT_EQ(faultOf(folder.write("utf16.md",
                                   "\xFF\xFE"
                                   "a\0"s)),
              LinkFault::utf16);
    EXPECT_EQ(faultOf(folder.write("binary.md", "a\0b"s)), LinkFault::binary);
    EXPECT_EQ(faultOf(folder.write("latin.md", "\xE9t\xE9")), LinkFault::notUtf8);
    for (const auto& path : {folder.path(), folder.path() / "pipe", folder.path() / "loop",
                             folder.path() / "gone", large}) {
        EXPECT_EQ(faultOf(path), LinkFault::file) << path;
    }
    {
        const OtherUser user;
        EXPECT_EQ(list.createLocalFileNote(secret).refusal->fileFault(), FileFault::noPermission);
    }
    EXPECT_EQ(library->listing.counts().allNotes, 0);
}

TEST_F(LocalFileNotesTest, UpgradedNotesAreWrittenAndStoppedOnesStay) {
    const Note note = library.add("# Title\n\ntext\n");
    const auto path = folder.path() / "out.md";
    EXPECT_EQ(list.upgradeToLocalFile(note.id, path).noteID, note.id);
    EXPECT_EQ(bytesOf(path), note.content);
    EXPECT_EQ(library.stored(note.id).sourceFilePath, path.string());
    EXPECT_EQ(noteThatHas(path), note.id);

    list.stopTracking({note.id});
    const Note stopped = library.stored(note.id);
    EXPECT_EQ(stopped.content, note.content);
    EXPECT_FALSE(stopped.sourceFilePath || stopped.bookmarkData);
    EXPECT_EQ(library->listing.counts().localFiles, 0);
    EXPECT_EQ(bytesOf(path), note.content);
}

TEST_F(LocalFileNotesTest, AFileThatCannotBeWrittenLeavesTheNoteOrdinary) {
    const Note note = library.add("text");
    testing::internal::CaptureStdout();
    const auto outcome = list.upgradeToLocalFile(note.id, folder.path() / "no/such/folder.md");
    const auto log = testing::internal::GetCapturedStdout();
    ASSERT_TRUE(outcome.refusal);
    EXPECT_EQ(outcome.refusal->fileFault(), FileFault::missing);
    EXPECT_TRUE(log.starts_with("Error upgrading note to local file: ")) << log;
    EXPECT_EQ(library.stored(note.id), note);
}

}  // namespace
}  // namespace corvel
