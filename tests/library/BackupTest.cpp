#include "library/BackupJob.h"
#include "library/RestoreJob.h"
#include "model/PendingRestore.h"
#include "model/Schema.h"
#include "model/StoreFiles.h"
#include "platform/LocalDay.h"
#include "support/FileSizeLimit.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/Mount.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iomanip>
#include <memory>

namespace corvel {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr std::size_t kLarge = 200 * 1024;

const BackupChecker kChecker;

class BackupTest : public testing::Test {
protected:
    BackupFolder backups() { return BackupFolder(library.folder()); }

    BackupOutcome backUp(BackupKind kind = BackupKind::daily) {
        BackupJob job(library.controller(), kChecker);
        std::optional<BackupOutcome> result;
        job.start(kind, {}, [&](const BackupOutcome& outcome) { result = outcome; });
        EXPECT_FALSE(result);
        EXPECT_TRUE(turnUntil([&] { return result.has_value(); }));
        return result.value_or(BackupOutcome{});
    }

    std::optional<RestoreFault> prepare(
        const BackupInfo& backup, RestoreJob::Save save = [] { return true; }) {
        RestoreJob job(library.controller(), kChecker, std::move(save));
        std::optional<RestoreOutcome> result;
        job.start(backup, {}, [&](const RestoreOutcome& outcome) { result = outcome; });
        EXPECT_TRUE(turnUntil([&] { return result.has_value(); }));
        return result.value_or(RestoreOutcome{RestoreFault::failed, {}}).fault;
    }

    /// As a run of the program does it: prepared, then taken by the next start.
    std::optional<RestoreFault> restore(
        const BackupInfo& backup, RestoreJob::Save save = [] { return true; }) {
        const auto fault = prepare(backup, std::move(save));
        library.reopen();
        return fault;
    }

    Uuid attach(const Note& note, const std::string& bytes) {
        const Attachment attachment{
            Uuid::random(), "a.png", "image/png", {bytes.begin(), bytes.end()}, {}};
        library->attachments.create(attachment, note.id);
        return attachment.id;
    }

    std::vector<std::string> titles() { return library.titles(SidebarFilter{}, SortOption::title); }

    std::vector<std::string> leftovers() {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(backups().path())) {
            const auto name = entry.path().filename().string();
            if (name.ends_with(".partial") || name.ends_with(".old")) names.push_back(name);
        }
        return names;
    }

    TestLibrary library;
};

}  // namespace

TEST_F(BackupTest, BringsBackNotesFoldersAndAttachments) {
    const auto folder = library->folders.createFolder("Work", {}).id;
    Note note = library.add("# First\n#tag");
    library->folders.addNoteToFolder(note.id, folder);
    const auto large = attach(note, std::string(kLarge, 'L'));
    const auto small = attach(note, "small");
    const auto before = dumpOfStore(library.controller());
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    EXPECT_EQ(made->notes, 1U);
    EXPECT_EQ(made->day, localDay(Date::now()));
    EXPECT_GT(made->bytes, kLarge);
    EXPECT_THAT(leftovers(), IsEmpty());

    library->notes.deletePermanently(note.id);
    library->folders.deleteFolder(folder);
    library.add("# Second");
    ASSERT_EQ(restore(*made), std::nullopt);
    EXPECT_EQ(dumpOfStore(library.controller()), before);
    EXPECT_EQ(library->attachments.fetchAttachment(large)->data.size(), kLarge);
    EXPECT_EQ(library->attachments.fetchAttachment(small)->data.size(), 5U);

    // And back again: what was replaced is kept.
    const auto list = backups().list();
    ASSERT_THAT(list, SizeIs(2));
    EXPECT_EQ(list[0].kind, BackupKind::beforeRestore);
    ASSERT_EQ(restore(list[0]), std::nullopt);
    EXPECT_THAT(titles(), ElementsAre("Second"));
}

TEST_F(BackupTest, HoldsWhatIsWrittenWhileItIsMade) {
    // More than one slice can copy.
    library.controller().viewContext().database().execute(
        "CREATE TABLE filler AS SELECT zeroblob(64000000) AS data");
    BackupJob job(library.controller(), kChecker);
    std::optional<BackupOutcome> result;
    std::optional<Uuid> image;
    int written = 0;
    job.start(
        BackupKind::daily,
        [&](double fraction) {
            if (fraction >= 1.0) return;
            const Note note = library.add("# Written " + std::to_string(written++));
            if (!image) image = attach(note, std::string(kLarge, 'i'));
        },
        [&](const BackupOutcome& outcome) { result = outcome; });
    ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
    ASSERT_TRUE(result->made) << result->detail;
    ASSERT_GT(written, 0);
    EXPECT_EQ(job.changesCovered(), changesOf(library.controller()));
    EXPECT_EQ(result->made->notes, static_cast<std::size_t>(written));
    EXPECT_TRUE(fs::exists(result->made->attachments() / image->toString()));
}

TEST_F(BackupTest, HoldsTheAttachmentsOfWhatIsDeletedAsItEnds) {
    const Note note = library.add("# Note");
    const auto image = attach(note, std::string(kLarge, 'i'));
    // What is no file of ours holds nothing up.
    fs::create_directories(library.controller().attachmentFiles().folder() / "lost+found" / "x");
    BackupJob job(library.controller(), kChecker);
    std::optional<BackupOutcome> result;
    job.start(
        BackupKind::daily,
        [&](double fraction) {
            if (fraction >= 1.0) library->notes.deletePermanently(note.id);
        },
        [&](const BackupOutcome& outcome) { result = outcome; });
    ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
    ASSERT_TRUE(result->made) << result->detail;
    ASSERT_EQ(restore(*result->made), std::nullopt);
    EXPECT_EQ(library->attachments.fetchAttachment(image).value().data.size(), kLarge);
    EXPECT_EQ(library.stored(note.id).content, note.content);
}

TEST_F(BackupTest, WaitsForATransactionToEnd) {
    library.add("# Note");
    BackupJob job(library.controller(), kChecker);
    std::optional<BackupOutcome> result;
    {
        ViewContext::Group group(library.controller().viewContext());
        library.add("# Grouped");
        job.start(BackupKind::daily, {}, [&](const BackupOutcome& outcome) { result = outcome; });
        EXPECT_FALSE(turnUntil([&] { return result.has_value(); }, std::chrono::milliseconds(200)));
        group.commit();
    }
    ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
    EXPECT_EQ(result->made.value_or(BackupInfo{}).notes, 2U);
}

TEST_F(BackupTest, KeepsSevenOfEachKindWhateverTheClockSays) {
    library.add("# Note");
    for (std::size_t i = 0; i < BackupFolder::kKept + 2; ++i)
        ASSERT_TRUE(backUp().made);
    const auto byHand = backUp(BackupKind::byHand).made;
    auto list = backups().list();
    ASSERT_THAT(list, SizeIs(BackupFolder::kKept + 1));
    EXPECT_EQ(list.front(), *byHand);
    EXPECT_EQ(list.back().number, 3U);
    EXPECT_THAT(leftovers(), IsEmpty());

    const auto today = localDay(Date::now());
    EXPECT_FALSE(backups().isDue(today));
    EXPECT_TRUE(backups().isDue("1999-12-31"));  // the clock was set back
    EXPECT_TRUE(backups().isDue("2999-12-31"));
}

TEST_F(BackupTest, AnAttachmentWrittenAgainLeavesTheBackupAsItWas) {
    const Note note = library.add("# Note");
    const auto id = attach(note, std::string(kLarge, 'o'));
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    library.controller().attachmentFiles().write(id, std::vector<std::uint8_t>(kLarge, 'n'));
    std::ifstream kept(made->attachments() / id.toString());
    EXPECT_EQ(kept.get(), 'o');
}

TEST_F(BackupTest, AFullOrLockedDiskLeavesNoBackupAndTheLibraryWorks) {
    library.close();
    FullDisk::makePossible();
    library.open();
    library.add("# Note");
    {
        const FullDisk full;
        EXPECT_EQ(backUp().fault, BackupFault::diskFull);
    }
    EXPECT_THAT(backups().list(), IsEmpty());
    EXPECT_THAT(leftovers(), IsEmpty());
    library.add("# Other");
    EXPECT_TRUE(backUp().made);
    if (::geteuid() == 0) return;  // nothing is locked to root
    fs::permissions(backups().path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(backUp().fault, BackupFault::notWritable);
    fs::permissions(backups().path(), fs::perms::owner_all);
}

TEST_F(BackupTest, AKilledProgramLeavesTheOldBackupsAndTheLibrary) {
    for (int i = 0; i < 200; ++i)
        library.add("# Note " + std::to_string(i) + "\n" + std::string(5000, 'x'));
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    library.close();
    const pid_t child = ::fork();
    if (child == 0) {
        PersistenceController controller(PersistenceController::Storage::onDisk, library.folder());
        BackupJob job(controller, kChecker);
        job.start(
            BackupKind::daily, [](double) { ::raise(SIGKILL); }, [](const BackupOutcome&) {});
        turnUntil([] { return false; });
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_THAT(leftovers(), ElementsAre("new.partial"));
    library.open();
    EXPECT_THAT(backups().list(), ElementsAre(*made));
    EXPECT_TRUE(backUp().made);
    EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(BackupTest, WhatAKilledProgramWasRemovingGoesWithTheNextBackup) {
    library.add("# Note");
    ASSERT_TRUE(backUp().made);
    const auto begun = backups().path() / "2026-01-01.old";
    fs::create_directories(begun / storeFiles::kAttachments);
    std::ofstream(begun / storeFiles::kStore) << "half removed";
    ASSERT_TRUE(backUp().made);
    EXPECT_THAT(leftovers(), IsEmpty());
    EXPECT_THAT(backups().list(), SizeIs(2));
}

TEST_F(BackupTest, ListsOnlyWhatIsABackup) {
    library.add("# Note");
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    const std::string good =
        R"({"kind":"daily","day":"2999-01-01","made":1,"number":9,"notes":1,"bytes":1})";
    const auto put = [&](const std::string& name, const std::string& info) {
        fs::create_directory(backups().path() / name);
        std::ofstream(backups().path() / name / "backup.json") << info;
        std::ofstream(backups().path() / name / storeFiles::kStore) << "x";
    };
    put("list", "[]");
    put("text", "\xFF{");
    put("kind", R"({"kind":"weekly","day":"2999-01-01","made":1,"number":9,"notes":1,"bytes":1})");
    put("number",
        R"({"kind":"daily","day":"2999-01-01","made":1,"number":"9","notes":1,"bytes":1})");
    put("nothing", R"({"kind":"daily"})");
    put("begun.partial", good);
    put("goes.old", good);
    put("no store", good);
    fs::remove(backups().path() / "no store" / storeFiles::kStore);
    std::ofstream(backups().path() / "a file") << good;
    EXPECT_THAT(backups().list(), ElementsAre(*made));
    EXPECT_TRUE(backUp().made);
    put("good", good);
    EXPECT_THAT(backups().list(), SizeIs(3));
}

TEST_F(BackupTest, RefusesWhatIsDamagedNewerOrGone) {
    const Note note = library.add("# Note\n" + std::string(100'000, 'x'));
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    library.add("# Later");
    const auto good = made->folder.string() + ".good";
    fs::copy_file(made->store(), good);

    fs::resize_file(made->store(), fs::file_size(made->store()) / 2);
    EXPECT_EQ(restore(*made), RestoreFault::damaged);
    std::ofstream(made->store(), std::ios::trunc)
        << "not a database, though long enough to look at";
    EXPECT_EQ(restore(*made), RestoreFault::damaged);
    std::ofstream(made->store(), std::ios::trunc).flush();
    EXPECT_EQ(restore(*made), RestoreFault::damaged);
    fs::copy_file(good, made->store(), fs::copy_options::overwrite_existing);
    Database(made->store())
        .execute("PRAGMA user_version=" + std::to_string(schema::kVersion + 1) +
                 "; PRAGMA journal_mode=DELETE");
    EXPECT_EQ(restore(*made), RestoreFault::newer);
    fs::remove_all(made->folder);
    EXPECT_EQ(restore(*made), RestoreFault::gone);
    // Not even a backup was made of the library, which stayed as it is.
    EXPECT_THAT(titles(), ElementsAre("Later", "Note"));
    EXPECT_FALSE(fs::exists(pendingRestore::preparing(library.folder())));
    EXPECT_EQ(library.stored(note.id).content, note.content);
}

TEST_F(BackupTest, WordsTypedWhileItRestoresAreKeptBeforeItEnds) {
    library.add("# Old");
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    int saves = 0;
    const auto fault = restore(*made, [&] {
        if (++saves == 1) library.add("# Typed");
        return true;
    });
    EXPECT_EQ(fault, std::nullopt);
    EXPECT_EQ(saves, 2);
    EXPECT_THAT(titles(), ElementsAre("Old"));
    const auto kept = backups().list().front();
    EXPECT_EQ(kept.notes, 2U);
    EXPECT_EQ(restore(kept), std::nullopt);
    EXPECT_THAT(titles(), ElementsAre("Old", "Typed"));
    EXPECT_EQ(restore(*made, [] { return false; }), RestoreFault::notSaved);
    EXPECT_THAT(titles(), ElementsAre("Old", "Typed"));
}

TEST_F(BackupTest, ARestorationKilledOnItsWayIsFinishedByTheNextStart) {
    library.add("# Old");
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    library.add("# New");
    const auto folder = library.folder();
    const auto preparing = pendingRestore::preparing(folder);
    library.close();
    // Not committed: it is as if nothing had been.
    fs::create_directory(preparing);
    fs::copy_file(made->store(), preparing / storeFiles::kStore);
    library.open();
    EXPECT_THAT(titles(), ElementsAre("New", "Old"));
    EXPECT_FALSE(fs::exists(preparing));
    // Committed, with the old store's log still beside.
    fs::create_directory(preparing);
    fs::copy_file(made->store(), preparing / storeFiles::kStore);
    library.add("# Newer");
    fs::copy_file(folder / "qnoCorvel.sqlite-wal", folder / "log");
    pendingRestore::commit(folder);
    library.close();
    fs::rename(folder / "log", folder / "qnoCorvel.sqlite-wal");
    library.open();
    EXPECT_THAT(titles(), ElementsAre("Old"));
}

TEST_F(BackupTest, ALibraryThatNeverRestsIsNotReplaced) {
    library.add("# Old");
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    int saves = 0;
    const auto fault = prepare(*made, [&] {
        library.add("# Typed " + std::to_string(++saves));
        return true;
    });
    EXPECT_EQ(fault, RestoreFault::changed);
    EXPECT_GT(saves, 1);
    EXPECT_FALSE(fs::exists(pendingRestore::preparing(library.folder())));
    library.reopen();
    EXPECT_THAT(titles(), SizeIs(saves + 1));
}

// Where nothing can be linked to, as on other file systems than ours, files are copied.
TEST_F(BackupTest, CopiesWhatCannotBeLinkedToAndNeverTakesPartOfAFileForTheWhole) {
    const Note note = library.add("# Note");
    const auto id = attach(note, std::string(kLarge, 'i'));
    const auto other = attach(note, std::string(kLarge, 'j'));
    fs::create_directory(backups().path());
    const Mount volume = Mount::ofSize(backups().path(), "80m");
    if (!volume.isMounted()) GTEST_SKIP() << "needs root";
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    EXPECT_EQ(fs::file_size(made->attachments() / id.toString()), kLarge);

    library->notes.deletePermanently(note.id);
    {
        const FileSizeLimit full(kLarge - 1000);
        ASSERT_EQ(prepare(*made), RestoreFault::failed);
    }
    ASSERT_EQ(restore(*made), std::nullopt);
    EXPECT_EQ(library->attachments.fetchAttachment(id)->data.size(), kLarge);
    EXPECT_EQ(library->attachments.fetchAttachment(other)->data.size(), kLarge);
}

TEST_F(BackupTest, ADiskWithLittleRoomTakesNoBackupAndNoRestoration) {
    library.add("# Note");
    fs::create_directory(backups().path());
    const Mount volume = Mount::ofSize(backups().path(), "72m");
    if (!volume.isMounted()) GTEST_SKIP() << "needs root";
    const auto made = backUp().made;
    ASSERT_TRUE(made);
    std::ofstream(backups().path() / "filler") << std::setfill('x') << std::setw(9'000'000) << "";
    EXPECT_EQ(backUp().fault, BackupFault::diskFull);
    EXPECT_EQ(restore(*made), RestoreFault::diskFull) << "the present one could not be kept";
    EXPECT_THAT(leftovers(), IsEmpty());
}

}  // namespace corvel
