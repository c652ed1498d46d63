#include "app/LinkedFileSessionTest.h"

#include "library/LinkedFileScan.h"
#include "library/Notifications.h"
#include "platform/FileDescriptor.h"
#include "platform/WholeFile.h"
#include "support/FileSizeLimit.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/Mount.h"
#include "support/OtherUser.h"
#include "support/TestSession.h"

#include <fcntl.h>
#include <glibmm/main.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using Kind = LinkState::Kind;

TEST_F(LinkedFileSessionTest, SavingWritesTheFileInItsOwnForm) {
    const auto id = openFile("\xEF\xBB\xBF# A\r\nb\r\n");
    EXPECT_EQ(state(), Kind::inStep);
    type("c\n");
    ASSERT_TRUE(save());
    EXPECT_EQ(fileText(), "\xEF\xBB\xBF# A\r\nb\r\nc\r\n");
    EXPECT_EQ(storedText(id), "# A\nb\nc\n");
    // Leaving the note stores the bookmark of what was written.
    activate(CommandID::newNote);
    EXPECT_EQ(bookmarkOf(id)->fileHash, hashOf(fileText()));
    EXPECT_EQ(bookmarkOf(id)->noteHash, hashOf(storedText(id)));
}

TEST_F(LinkedFileSessionTest, NothingIsWrittenWhenTheTextIsTheFiles) {
    openFile("# A\n");
    const auto before = stampOf(note);
    type("x");
    buffer = "# A\n";
    ASSERT_TRUE(save());
    session->editor.titleEdited("Another title");
    ASSERT_TRUE(save());
    EXPECT_EQ(stampOf(note), before);
}

TEST_F(LinkedFileSessionTest, AFileIsNotTouchedBeforeTheNoteIsSaved) {
    openFile("# A\n");
    const auto before = stampOf(note);
    type("typed");
    session->linkedFile.check();
    EXPECT_EQ(stampOf(note), before);
    EXPECT_EQ(state(), Kind::inStep);
}

TEST_F(LinkedFileSessionTest, WhatOthersWriteIsReadAgain) {
    const auto id = openFile("# One\n");
    for (const auto* text : {"# Two\n", "# Three\n"}) {
        write(text);
        ASSERT_TRUE(turnUntil([&] { return buffer == text; }));
        replace(std::string(text) + "more\n");
        ASSERT_TRUE(turnUntil([&] { return buffer == std::string(text) + "more\n"; }));
    }
    EXPECT_EQ(storedText(id), "# Three\nmore\n");
    EXPECT_EQ(session->editor.title(), "Three");
    EXPECT_FALSE(session->editor.isEdited());
    EXPECT_EQ(state(), Kind::inStep);
}

TEST_F(LinkedFileSessionTest, AChangeIsNoticedInTheTurnOfItsEvent) {
    openFile("one");
    replace("two");
    session->notifications.post(notifications::reloadCurrentNoteFromDisk);
    EXPECT_EQ(buffer, "two") << "without a turn of the loop in between";
}

TEST_F(LinkedFileSessionTest, EditsThatCameToNothingAreNoOtherVersion) {
    const auto id = openFile("# A\n");
    type("x");
    buffer = "# A\n";
    session->editor.titleEdited("Own");
    replace("# B\n");
    ASSERT_TRUE(turnUntil([&] { return buffer == "# B\n"; }));
    EXPECT_EQ(session->list.size(), 1U) << "there is nothing to keep beside it";
    EXPECT_EQ(session->library.notes.fetchNote(id)->title, "Own");
    EXPECT_FALSE(session->editor.isEdited());
}

TEST_F(LinkedFileSessionTest, AnEmptiedOrMissingFileMayOnlyBeOnItsWay) {
    openFile("one");
    write("");
    session->notifications.post(notifications::reloadCurrentNoteFromDisk);
    EXPECT_EQ(buffer, "one");
    fs::remove(note);
    session->notifications.post(notifications::reloadCurrentNoteFromDisk);
    EXPECT_EQ(state(), Kind::inStep);
    write("two");
    ASSERT_TRUE(turnUntil([&] { return buffer == "two"; }));
    write("");
    ASSERT_TRUE(turnUntil([&] { return buffer.empty(); })) << "it stays empty";
}

TEST_F(LinkedFileSessionTest, WhereBothChangedNothingIsOverwritten) {
    const auto id = openFile("base\n");
    type("mine\n");
    replace("theirs\n");
    ASSERT_TRUE(turnsTo(Kind::conflict));
    ASSERT_TRUE(save());
    EXPECT_EQ(storedText(id), "base\nmine\n");
    EXPECT_EQ(fileText(), "theirs\n");
    const auto versions = session->linkedFile.versions().value();
    EXPECT_EQ(versions.mine, "base\nmine\n");
    EXPECT_EQ(versions.theirs, "theirs\n");
    // So it is after a restart, too.
    close();
    open();
    EXPECT_EQ(selected(), id);
    EXPECT_EQ(state(), Kind::conflict);
    EXPECT_EQ(fileText(), "theirs\n");
}

TEST_F(LinkedFileSessionTest, AConflictEndsAsTheUserSays) {
    const auto id = openFile("base\n");
    const auto makeConflict = [&](const std::string& theirs) {
        type("mine\n");
        replace(theirs);
        session->linkedFile.check();
        ASSERT_EQ(state(), Kind::conflict);
    };
    makeConflict("theirs 1\n");
    EXPECT_TRUE(session->linkedFile.keepMine(seen()));
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(fileText(), "base\nmine\n");

    makeConflict("theirs 2\n");
    EXPECT_TRUE(session->linkedFile.takeTheirs(seen()));
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(storedText(id), "theirs 2\n");
    EXPECT_EQ(buffer, "theirs 2\n");

    makeConflict("theirs 3\n");
    EXPECT_TRUE(session->linkedFile.keepBoth(seen()));
    EXPECT_EQ(fileText(), "theirs 3\n");
    EXPECT_EQ(storedText(id), "theirs 3\n");
    const auto notes = session->library.notes.search("theirs 2\nmine");
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_FALSE(notes.front().sourceFilePath);

    // Changed once more while the user was deciding.
    makeConflict("theirs 4\n");
    const auto old = seen();
    replace("theirs 5\n");
    EXPECT_FALSE(session->linkedFile.keepMine(old));
    EXPECT_EQ(state(), Kind::conflict);
    EXPECT_EQ(fileText(), "theirs 5\n");
    EXPECT_EQ(session->linkedFile.versions()->theirs, "theirs 5\n");
}

TEST_F(LinkedFileSessionTest, TheSameChangeOnBothSidesIsNoConflict) {
    openFile("base\n");
    type("more\n");
    replace("base\nmore\n");
    session->linkedFile.check();
    EXPECT_EQ(state(), Kind::inStep);
    ASSERT_TRUE(save());
    EXPECT_EQ(fileText(), "base\nmore\n");
}

// The file size limit stands for a full disk: the store writes less than that at a time.
TEST_F(LinkedFileSessionTest, AFullDiskLosesNothingAndIsTriedAgain) {
    const auto id = openFile("base\n");
    const std::string large(6'000'000, 'x');
    {
        const FileSizeLimit full(5'500'000);
        type(large);
        // The store itself may not grow so far, either: then the words are in the view and the
        // draft, and the file is not touched at all.
        save();
        EXPECT_EQ(fileText(), "base\n");
    }
    ASSERT_TRUE(save());
    session->linkedFile.check();
    EXPECT_EQ(storedText(id), "base\n" + large);
    EXPECT_EQ(fs::file_size(note), 5 + large.size());
}

TEST_F(LinkedFileSessionTest, AStoreThatRefusesLosesNeitherSideOfAConflict) {
    FullDisk::makePossible();
    close();
    open();
    const auto id = openFile("base\n");
    type("mine\n");
    replace("theirs\n");
    ASSERT_TRUE(turnsTo(Kind::conflict));
    ASSERT_TRUE(save());
    testing::internal::CaptureStdout();
    {
        const FullDisk full;
        EXPECT_FALSE(session->linkedFile.keepBoth(seen()));
        EXPECT_EQ(state(), Kind::conflict);
        EXPECT_EQ(buffer, "base\nmine\n");
        EXPECT_FALSE(session->linkedFile.keepBoth(seen()));
    }
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(session->linkedFile.keepBoth(seen()));
    EXPECT_EQ(fileText(), "theirs\n");
    ASSERT_TRUE(session->finish());
    close();
    open();
    EXPECT_EQ(storedText(id), "theirs\n");
    EXPECT_EQ(session->library.notes.search("base\nmine").size(), 1U);
    EXPECT_EQ(session->list.size(), 2U) << "one copy, however often it was asked for";
}

TEST_F(LinkedFileSessionTest, AFileThatMayNotBeWrittenLeavesTheTextInTheStore) {
    const auto id = openFile("base\n");
    // The store belongs to the test, the file is read-only.
    fs::permissions(note, fs::perms(0444));
    LinkState left;
    session->linkedFile.signalLeftUnwritten().connect(
        [&](const LinkState& state) { left = state; });
    {
        const OtherUser user;
        type("more\n");
        ASSERT_TRUE(save());
    }
    ASSERT_EQ(state(), Kind::unwritable);
    EXPECT_EQ(session->linkedFile.state().error->fileFault(), FileFault::noPermission);
    EXPECT_EQ(storedText(id), "base\nmore\n");
    EXPECT_EQ(fileText(), "base\n");
    {
        const OtherUser user;
        type("and more\n");
        session->linkedFile.check();
        EXPECT_EQ(state(), Kind::unwritable) << "typing on mends nothing";
        activate(CommandID::newNote);
    }
    EXPECT_EQ(left.path, note);

    fs::permissions(note, fs::perms(0644));
    session->state.selectedNoteID.set(id);
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(fileText(), "base\nmore\nand more\n") << "opening the note writes what was left";
}

TEST_F(LinkedFileSessionTest, AVolumeWithoutRoomOrWriteAccessIsWrittenWhenItCan) {
    const Mount volume = Mount::ofSize(files, "64k");
    if (!volume.isMounted()) GTEST_SKIP() << "needs root";
    openFile("base\n");
    const std::string large(200'000, 'x');
    type(large);
    ASSERT_TRUE(save());
    ASSERT_EQ(state(), Kind::unwritable);
    EXPECT_EQ(session->linkedFile.state().error->fileFault(), FileFault::diskFull);
    EXPECT_EQ(fileText(), "base\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(files), {}), 1) << "nothing is left beside it";
    ASSERT_TRUE(volume.change(0, "size=4m"));
    EXPECT_TRUE(turnsTo(Kind::inStep)) << "nobody asks for it";
    EXPECT_EQ(fileText(), "base\n" + large);

    ASSERT_TRUE(volume.change(MS_RDONLY, ""));
    type("more");
    ASSERT_TRUE(save());
    ASSERT_EQ(state(), Kind::unwritable);
    EXPECT_EQ(session->linkedFile.state().error->fileFault(), FileFault::readOnly);
    ASSERT_TRUE(volume.change(0, ""));
    session->linkedFile.check();
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(fileText(), "base\n" + large + "more");
}

// A server that is gone: whatever touches the file would wait for it.
TEST_F(LinkedFileSessionTest, ASilentVolumeHoldsNothingUp) {
    const auto id = openFile("base\n");
    {
        const Mount silent = Mount::silent(files);
        if (!silent.isMounted()) GTEST_SKIP() << "needs root and FUSE";
        type("mine\n");
        ASSERT_TRUE(save());
        ASSERT_EQ(state(), Kind::unreadable);
        EXPECT_EQ(session->linkedFile.state().error->fileFault(), FileFault::noAnswer);
        EXPECT_EQ(storedText(id), "base\nmine\n");
        EXPECT_EQ(session->linkedFile.writeAgain().refusal->fileFault(), FileFault::noAnswer);
        // Other files are opened, the list of the linked ones is looked through, the note closed
        // and, at the next start, opened.
        const auto other = folder.write("other.md", "other\n");
        EXPECT_TRUE(session->list.findOrCreateLocalFileNote(other).noteID);
        EXPECT_EQ(session->list.findOrCreateLocalFileNote(files / "new.md").refusal->fileFault(),
                  FileFault::noAnswer);
        activate(CommandID::newNote);
        LinkedFileScan scan(session->library.notes);
        while (scan.work(std::chrono::milliseconds(100), std::nullopt)) {
        }
        close();
        open();
        session->state.selectedNoteID.set(id);
        EXPECT_EQ(state(), Kind::unreadable);
    }
    session->linkedFile.check();
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(fileText(), "base\nmine\n");
    replace("theirs\n");
    EXPECT_TRUE(turnUntil([&] { return buffer == "theirs\n"; })) << "it is watched again";
}

TEST_F(LinkedFileSessionTest, WhatTakesTheFilesPlaceIsNeitherWaitedForNorOverwritten) {
    const auto id = openFile("base\n");
    const auto replaceBy = [&](FileFault fault, const std::function<void()>& make) {
        SCOPED_TRACE(static_cast<int>(fault));
        fs::remove(note);
        make();
        ASSERT_TRUE(turnsTo(Kind::unreadable));
        EXPECT_EQ(session->linkedFile.state().error->fileFault(), fault);
        type("x");
        ASSERT_TRUE(save());
        EXPECT_EQ(state(), Kind::unreadable);
        const auto text = storedText(id);
        fs::remove(note);
        write("base\n");
        ASSERT_TRUE(turnsTo(Kind::inStep));
        EXPECT_EQ(fileText(), text);
        EXPECT_EQ(storedText(id), text);
        write("base\n");
        ASSERT_TRUE(turnUntil([&] { return buffer == "base\n"; }));
    };
    replaceBy(FileFault::notAFile, [&] { ASSERT_EQ(::mkfifo(note.c_str(), 0666), 0); });
    replaceBy(FileFault::folder, [&] { fs::create_directory(note); });
    replaceBy(FileFault::linkLoop, [&] { fs::create_symlink("note.md", note); });
}

TEST_F(LinkedFileSessionTest, ACrashBetweenStoreAndFileIsSettledAtTheNextStart) {
    const auto id = openFile("base\n");
    activate(CommandID::newNote);
    auto changed = *session->library.notes.fetchNote(id);
    changed.content = "base\nsaved\n";
    session->library.notes.update(changed);  // and then the power fails
    session->state.selectedNoteID.set(id);
    EXPECT_EQ(fileText(), "base\nsaved\n");
    // Between file and bookmark: the same text on both sides.
    session->library.notes.renewLink(id, note.string(), Bookmark{note, {}, {}, {}}.encoded());
    close();
    open();
    EXPECT_EQ(state(), Kind::inStep);
}

TEST_F(LinkedFileSessionTest, AMovedFileIsFollowed) {
    const auto id = openFile("base\n");
    fs::create_directory(files / "deep");
    fs::rename(note, files / "deep/moved.md");
    note = files / "deep/moved.md";
    ASSERT_TRUE(turnUntil([&] { return session->linkedFile.state().path == note; }));
    EXPECT_EQ(session->library.notes.fetchNote(id)->sourceFilePath, note.string());
    type("more\n");
    ASSERT_TRUE(save());
    EXPECT_EQ(fileText(), "base\nmore\n");
    replace("theirs\n");
    ASSERT_TRUE(turnUntil([&] { return buffer == "theirs\n"; })) << "it is watched there";
}

// A file that was written is another one to its folder; the bookmark of it comes a second later.
TEST_F(LinkedFileSessionTest, AFileThatMovesRightAfterItWasWrittenIsFollowed) {
    openFile("base\n");
    type("more\n");
    ASSERT_TRUE(save());
    fs::create_directory(files / "deep");
    fs::rename(note, files / "deep/moved.md");
    session->linkedFile.check();
    turnUntilIdle();
    EXPECT_EQ(session->linkedFile.state().path, files / "deep/moved.md");
    EXPECT_EQ(state(), Kind::inStep);
}

TEST_F(LinkedFileSessionTest, AMoveThatTheStoreRefusedIsStoredWithTheNextSave) {
    FullDisk::makePossible();
    close();
    open();
    openFile("base\n");
    const auto moved = files / "moved.md";
    fs::rename(note, moved);
    testing::internal::CaptureStdout();
    {
        const FullDisk full;
        session->linkedFile.check();
    }
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(session->linkedFile.state().path, moved);
    type("more\n");
    ASSERT_TRUE(save());
    close();
    open();
    EXPECT_EQ(session->linkedFile.state().path, moved);
    EXPECT_EQ(state(), Kind::inStep);
}

// So editors do that keep the version before.
TEST_F(LinkedFileSessionTest, AFileThatComesBackDuringTheSearchIsTheOneThatIsMeant) {
    openFile("base\n");
    fs::create_directory(files / "versions");
    const auto kept = files / "versions/note.md";
    fs::rename(note, kept);
    session->linkedFile.check();
    write("theirs\n");
    turnUntilIdle();
    EXPECT_EQ(session->linkedFile.state().path, note);
    EXPECT_EQ(buffer, "theirs\n");
    EXPECT_EQ(readWholeFile(kept, 100).bytes, "base\n");
}

TEST_F(LinkedFileSessionTest, AVanishedFileLeavesTheNoteWithThreeWaysOut) {
    const auto id = openFile("base\r\nline\r\n");
    const auto vanish = [&] {
        fs::remove(note);
        testing::internal::CaptureStdout();
        EXPECT_TRUE(turnsTo(Kind::vanished));
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "[EditorViewModel] Local file was deleted/moved: " + note.string() + "\n");
    };
    vanish();
    type("more\n");
    ASSERT_TRUE(save());
    EXPECT_FALSE(fs::exists(note)) << "a file that was deleted is not made again by itself";

    EXPECT_EQ(session->linkedFile.writeAgain().noteID, id);
    EXPECT_EQ(fileText(), "base\r\nline\r\nmore\r\n");
    EXPECT_EQ(state(), Kind::inStep);

    vanish();
    const auto elsewhere = folder.write("elsewhere.md", "base\nline\nmore\n");
    EXPECT_EQ(session->linkedFile.locate(elsewhere).noteID, id);
    EXPECT_EQ(state(), Kind::inStep);
    EXPECT_EQ(session->linkedFile.state().path, elsewhere);

    note = elsewhere;
    vanish();
    // The note alone has the text now: another file's does not take its place unasked.
    const auto other = folder.write("other.md", "something else\n");
    EXPECT_EQ(session->linkedFile.locate(other).noteID, id);
    EXPECT_EQ(state(), Kind::conflict);
    EXPECT_EQ(storedText(id), "base\nline\nmore\n");
    EXPECT_TRUE(session->linkedFile.keepMine(seen()));
    note = other;
    EXPECT_EQ(fileText(), "base\nline\nmore\n");
    vanish();
    session->linkedFile.keepAsOrdinary();
    EXPECT_EQ(state(), Kind::none);
    EXPECT_FALSE(session->library.notes.fetchNote(id)->bookmarkData);
    EXPECT_EQ(storedText(id), "base\nline\nmore\n");
}

TEST_F(LinkedFileSessionTest, WritingAgainNeverTakesThePlaceOfAFileThatCameBack) {
    const auto id = openFile("base\n");
    fs::remove(note);
    ASSERT_TRUE(turnsTo(Kind::vanished));
    type("mine\n");
    ASSERT_TRUE(save());
    fs::permissions(files, fs::perms(0555));
    {
        const OtherUser user;
        const auto refusal = session->linkedFile.writeAgain().refusal;
        ASSERT_TRUE(refusal);
        EXPECT_EQ(refusal->fileFault(), FileFault::noPermission);
    }
    fs::permissions(files, fs::perms(0755));
    write("theirs\n");  // its event has not come yet
    EXPECT_EQ(session->linkedFile.writeAgain().noteID, id);
    EXPECT_EQ(state(), Kind::conflict);
    EXPECT_EQ(fileText(), "theirs\n");
    EXPECT_EQ(storedText(id), "base\nmine\n");
}

TEST_F(LinkedFileSessionTest, AFileThatIsShownByHandIsTheNotesOnlyIfItHoldsWhatTheNoteKnew) {
    const auto id = openFile("base\n");
    fs::remove(note);
    ASSERT_TRUE(turnsTo(Kind::vanished));
    ASSERT_TRUE(session->linkedFile.locate(folder.write("other.md", "other\n")).noteID);
    EXPECT_EQ(state(), Kind::conflict) << "this note is the only one to have its text";
    EXPECT_EQ(storedText(id), "base\n");

    activate(CommandID::newNote);
    note = files / "second.md";
    const auto second = openFile("base\n");
    fs::remove(note);
    ASSERT_TRUE(turnsTo(Kind::vanished));
    type("mine\n");
    ASSERT_TRUE(save());
    note = folder.write("copy.md", "base\n");
    ASSERT_TRUE(session->linkedFile.locate(note).noteID);
    EXPECT_EQ(state(), Kind::inStep) << "only the note was changed";
    EXPECT_EQ(fileText(), "base\nmine\n");
    EXPECT_EQ(storedText(second), "base\nmine\n");
}

TEST_F(LinkedFileSessionTest, AVanishedFileThatComesBackIsTakenUpAgain) {
    openFile("base\n");
    fs::remove(note);
    ASSERT_TRUE(turnsTo(Kind::vanished));
    type("mine\n");
    ASSERT_TRUE(save());
    write("base\n");  // from a backup, say
    ASSERT_TRUE(turnsTo(Kind::inStep));
    EXPECT_EQ(fileText(), "base\nmine\n");
}

TEST_F(LinkedFileSessionTest, WhatIsNoTextAnyMoreIsNotTakenOver) {
    const auto id = openFile("base\n");
    replace(std::string("a\0b", 3));
    ASSERT_TRUE(turnsTo(Kind::unreadable));
    EXPECT_EQ(session->linkedFile.state().error->fault(), LinkFault::binary);
    type("mine\n");
    ASSERT_TRUE(save());
    EXPECT_EQ(fileText(), std::string("a\0b", 3));
    EXPECT_EQ(storedText(id), "base\nmine\n");
    replace("base\n");
    ASSERT_TRUE(turnsTo(Kind::inStep));
    EXPECT_EQ(fileText(), "base\nmine\n");
    replace(std::string("a\0b", 3));
    ASSERT_TRUE(turnsTo(Kind::unreadable));
    type("not saved yet");
    replace("base\nmine\n");
    EXPECT_TRUE(turnsTo(Kind::inStep));
}

TEST_F(LinkedFileSessionTest, TenThousandChangesAreAFewReloadsAndTheLastOneCounts) {
    openFile("00000");
    int reloads = 0;
    session->editor.signalOpened().connect([&] { ++reloads; });
    const auto start = std::chrono::steady_clock::now();
    const FileDescriptor file(::open(note.c_str(), O_WRONLY | O_CLOEXEC));
    int written = 0;
    ASSERT_TRUE(turnUntil([&] {
        for (int i = 0; i < 100 && written < 10'000; ++i) {
            const auto digits = std::to_string(100'000 + ++written).substr(1);
            EXPECT_EQ(::pwrite(file.get(), digits.data(), digits.size(), 0), 5);
        }
        return written == 10'000;
    }));
    ASSERT_TRUE(turnUntil([&] { return buffer == "10000"; }));
    const auto intervals = (std::chrono::steady_clock::now() - start) / FileMonitor::kInterval + 2;
    EXPECT_LE(reloads, intervals);
}

TEST_F(LinkedFileSessionTest, TrackingThatIsStoppedLeavesFileAndNoteAlone) {
    const auto id = openFile("base\n");
    type("more\n");
    session->list.stopTracking({id});
    EXPECT_EQ(state(), Kind::none);
    ASSERT_TRUE(save());
    EXPECT_EQ(storedText(id), "base\nmore\n");
    EXPECT_EQ(fileText(), "base\n");
    EXPECT_FALSE(session->library.notes.fetchNote(id)->sourceFilePath);
    EXPECT_FALSE(session->library.notes.fetchNote(id)->bookmarkData);
}

TEST_F(LinkedFileSessionTest, AnUpgradedNoteWritesOnToItsNewFile) {
    const auto id = openFile("base\n");
    const auto other = files / "other.md";
    type("more\n");
    ASSERT_TRUE(save());
    EXPECT_EQ(session->list.upgradeToLocalFile(id, other).noteID, id);
    type("end\n");
    ASSERT_TRUE(save());
    EXPECT_EQ(fileText(), "base\nmore\n");
    note = other;
    EXPECT_EQ(fileText(), "base\nmore\nend\n");
    close();
    open();
    EXPECT_EQ(session->linkedFile.state().path, other);
}

}  // namespace
}  // namespace corvel
