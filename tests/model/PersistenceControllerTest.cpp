#include "model/Note.h"
#include "model/PersistenceController.h"
#include "model/Schema.h"
#include "support/FullDisk.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace corvel {
namespace {

using Storage = PersistenceController::Storage;

std::int64_t number(PersistenceController& controller, std::string_view sql) {
    auto query = controller.viewContext().database().query(sql);
    return query.next() ? query.integer(0) : -1;
}

std::string texts(PersistenceController& controller, std::string_view sql) {
    auto query = controller.viewContext().database().query(sql);
    return query.next() ? query.string(0) : std::string();
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file, std::ios::binary).rdbuf();
    return text.str();
}

TEST(PersistenceController, CreatesAnEmptyStoreUnderTheApplicationFolder) {
    const TemporaryFolder folder;
    PersistenceController controller(Storage::onDisk, folder.path() / "a" / "qno Corvel");
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "a" / "qno Corvel" / "qnoCorvel.sqlite"));
    EXPECT_EQ(number(controller, "SELECT count(*) FROM note"), 0);
    EXPECT_TRUE(controller.iCloudEnabled());
}

TEST(PersistenceController, InMemoryHoldsTheTwoSampleNotesAndNoTagObjects) {
    PersistenceController controller(Storage::inMemory);
    EXPECT_FALSE(controller.iCloudEnabled());
    EXPECT_FALSE(controller.viewContext().hasChanges());
    auto query = controller.viewContext().database().query(
        "SELECT title, isPinned, wordCount, syncStatus, sortOrder, createdAt-modifiedAt, content"
        " FROM note JOIN noteContent ON notePk=pk ORDER BY sortOrder");
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.string(0), "Welcome to qno Corvel");
    EXPECT_TRUE(query.boolean(1));
    EXPECT_EQ(query.integer(2), 45);
    EXPECT_EQ(query.integer(3), 0);
    EXPECT_TRUE(query.text(6).ends_with("- [x] Open qno Corvel"));
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.string(0), "Markdown Cheatsheet");
    EXPECT_EQ(query.integer(2), 38);
    EXPECT_EQ(query.integer(4), 1);
    EXPECT_EQ(query.integer(5), -1'800'000'000);
    EXPECT_FALSE(query.next());
    EXPECT_EQ(number(controller, "SELECT count(*) FROM tag"), 0);
}

TEST(PersistenceController, DeleteRulesAreThoseOfTheRelations) {
    PersistenceController controller(Storage::inMemory);
    auto& database = controller.viewContext().database();
    database.execute(
        "INSERT INTO folder(pk, id, parentPk) VALUES(1, x'01', NULL), (2, x'02', 1);"
        "INSERT INTO tag(pk, id, fullPath, parentPk) VALUES(1, x'01', 'a', NULL), (2, x'02', "
        "'a/b', 1);"
        "INSERT INTO noteFolder(folderPk, notePk) VALUES(2, 1);"
        "INSERT INTO noteTag(tagPk, notePk) VALUES(2, 1);"
        "INSERT INTO attachment(id, notePk) VALUES(x'01', 1), (x'02', 2);"
        "DELETE FROM folder WHERE pk=1; DELETE FROM tag WHERE pk=1;");
    EXPECT_EQ(number(controller, "SELECT count(*) FROM folder"), 0);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM tag"), 0);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM note"), 2);
    database.execute("DELETE FROM note WHERE pk=1");
    EXPECT_EQ(number(controller, "SELECT count(*) FROM attachment"), 1);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM noteContent"), 1);
}

TEST(PersistenceController, CarriesAnOlderStoreForward) {
    const TemporaryFolder folder;
    // What version 1 of the program left behind: records and relations, nothing derived.
    Database(folder.path() / "qnoCorvel.sqlite")
        .execute(contentsOf(std::filesystem::path(CORVEL_TEST_DATA) / "model" / "version-1.sql"));
    PersistenceController controller(Storage::onDisk, folder.path());
    EXPECT_EQ(number(controller, "PRAGMA user_version"), schema::kVersion);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM note WHERE excerpt='' AND folderCount=0"),
              2);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM noteTag WHERE isAttached=1"), 2);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM tag WHERE isObject=1"), 2);
}

TEST(PersistenceController, KeepsTheListsOfOlderVersions) {
    PersistenceController fresh(Storage::inMemory);
    constexpr std::string_view kTables =
        "SELECT group_concat(name) FROM (SELECT name FROM sqlite_master WHERE name NOT LIKE "
        "'sqlite%' ORDER BY name)";
    constexpr std::string_view kLists =
        "SELECT (SELECT group_concat(tagPk||' '||isPinned||' '||modifiedAt||' '||notePk) FROM "
        "tagList)||' / '||(SELECT group_concat(folderPk||' '||isPinned||' '||modifiedAt||' "
        "'||notePk) FROM folderList)";
    constexpr std::string_view kRelations =
        "SELECT (SELECT count(*) FROM noteTag)+(SELECT count(*) FROM noteFolder)+"
        "(SELECT count(*) FROM tagList)+(SELECT count(*) FROM folderList)";
    for (const char* file : {"version-2.sql", "version-3.sql"}) {
        SCOPED_TRACE(file);
        const TemporaryFolder folder;
        Database(folder.path() / "qnoCorvel.sqlite")
            .execute(contentsOf(std::filesystem::path(CORVEL_TEST_DATA) / "model" / file));
        PersistenceController controller(Storage::onDisk, folder.path());
        EXPECT_EQ(texts(controller, kTables), texts(fresh, kTables));
        EXPECT_EQ(texts(controller, kLists), "1 1 2000000 1,2 1 2000000 1 / 1 0 3000000 2");
        EXPECT_EQ(number(controller,
                         "SELECT count(*) FROM noteTag WHERE notePk=1 AND isAttached=1"
                         " AND isInText=1"),
                  2);
        auto& database = controller.viewContext().database();
        database.execute("DELETE FROM tag WHERE pk=1; DELETE FROM folder");
        EXPECT_EQ(number(controller, kRelations), 0);
    }
}

TEST(PersistenceControllerDeathTest, AStoreThatCannotBeCarriedForwardWaitsForRoom) {
    FullDisk::makePossible();
    const TemporaryFolder folder;
    Database(folder.path() / "qnoCorvel.sqlite")
        .execute(contentsOf(std::filesystem::path(CORVEL_TEST_DATA) / "model" / "version-2.sql"));
    const auto openWithoutRoom = [&] {
        const FullDisk fullDisk;
        PersistenceController(Storage::onDisk, folder.path());
    };
    EXPECT_EXIT(openWithoutRoom(), testing::ExitedWithCode(1), "failed to load: .*disk");
    PersistenceController controller(Storage::onDisk, folder.path());
    EXPECT_EQ(number(controller, "PRAGMA user_version"), schema::kVersion);
    EXPECT_EQ(number(controller, "SELECT count(*) FROM noteTag WHERE isInText=1"), 2);
}

TEST(PersistenceControllerDeathTest, AStoreThatDoesNotLoadEndsTheProgramAndIsLeftAsItWas) {
    const TemporaryFolder folder;
    const std::string bytes = "This is a letter, not a database. " + std::string(5000, '.');
    const auto file = folder.write("qnoCorvel.sqlite", bytes);
    EXPECT_EXIT(PersistenceController(Storage::onDisk, folder.path()), testing::ExitedWithCode(1),
                "Core Data store failed to load: .*not a database");
    EXPECT_EQ(contentsOf(file), bytes);
}

TEST(PersistenceControllerDeathTest, ANewerOrABusyStoreIsNotTouched) {
    const TemporaryFolder folder;
    {
        PersistenceController controller(Storage::onDisk, folder.path());
        EXPECT_EXIT(PersistenceController(Storage::onDisk, folder.path()),
                    testing::ExitedWithCode(1), "failed to load: another qno Corvel is using");
        controller.viewContext().database().execute("PRAGMA user_version=99");
    }
    EXPECT_EXIT(PersistenceController(Storage::onDisk, folder.path()), testing::ExitedWithCode(1),
                "failed to load: .*newer version");
}

TEST(PersistenceControllerDeathTest, AFolderThatCannotBeMadeEndsTheProgram) {
    const TemporaryFolder folder;
    const auto file = folder.write("in the way", "");
    EXPECT_EXIT(PersistenceController(Storage::onDisk, file / "qno Corvel"),
                testing::ExitedWithCode(1), "failed to load: unable to open");
}

TEST(PersistenceController, AFailedSaveIsPrintedAndKept) {
    FullDisk::makePossible();
    const TemporaryFolder folder;
    PersistenceController controller(Storage::onDisk, folder.path());
    controller.viewContext().apply([](Database& database) {
        database.execute("INSERT INTO folder(id, name) VALUES(x'01', 'kept')");
    });
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        controller.save();
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Core Data save error: database or disk is full\n");
    EXPECT_TRUE(controller.viewContext().hasChanges());
    controller.save();
    EXPECT_FALSE(controller.viewContext().hasChanges());
}

TEST(SyncStatus, AnUnknownStoredValueIsPending) {
    EXPECT_EQ(syncStatusFromStored(0), SyncStatus::synced);
    EXPECT_EQ(syncStatusFromStored(2), SyncStatus::conflict);
    EXPECT_EQ(syncStatusFromStored(7), SyncStatus::pending);
    EXPECT_EQ(syncStatusFromStored(-1), SyncStatus::pending);
}

TEST(AttachmentFiles, StraysAreSweptAndNamedFilesStay) {
    const TemporaryFolder folder;
    const AttachmentFiles files(folder.path() / "files");
    const Uuid named = Uuid::random();
    const Uuid stray = Uuid::random();
    const std::vector<std::uint8_t> data(AttachmentFiles::kThreshold, 7);
    files.write(named, data);
    files.write(stray, data);
    files.sweep({named});
    EXPECT_EQ(files.read(named), data);
    EXPECT_FALSE(files.read(stray).has_value());
    files.remove(named);
    EXPECT_FALSE(files.read(named).has_value());
}

}  // namespace
}  // namespace corvel
