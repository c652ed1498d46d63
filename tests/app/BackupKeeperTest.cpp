#include "app/BackupKeeper.h"
#include "model/StoreFiles.h"
#include "support/MainLoop.h"
#include "support/TestLibrary.h"

#include <gtest/gtest.h>

#include <fstream>

namespace corvel {
namespace {

class BackupKeeperTest : public testing::Test {
protected:
    bool isIdleSoon() {
        return turnUntil([this] { return !keeper.isWorking(); });
    }

    TestLibrary library;
    int saves = 0;
    BackupKeeper keeper{library.controller(), [this] { return ++saves > 0; }, BackupChecker()};
};

TEST_F(BackupKeeperTest, BacksUpByHandWithTheOpenNoteSaved) {
    library.add("# Note");
    keeper.backUpNow();
    EXPECT_TRUE(keeper.isWorking());
    EXPECT_EQ(saves, 1);
    keeper.backUpNow();  // one at a time
    ASSERT_TRUE(isIdleSoon());
    ASSERT_EQ(keeper.list().size(), 1U);
    EXPECT_EQ(keeper.list()[0].kind, BackupKind::byHand);
    EXPECT_FALSE(keeper.backupFault());
}

TEST_F(BackupKeeperTest, SaysWhatFailedUntilItWorksAgain) {
    const auto folder = library.folder() / storeFiles::kBackups;
    std::ofstream(folder) << "in the way";
    keeper.backUpNow();
    ASSERT_TRUE(isIdleSoon());
    EXPECT_TRUE(keeper.backupFault());
    std::filesystem::remove(folder);
    keeper.backUpNow();
    ASSERT_TRUE(isIdleSoon());
    EXPECT_FALSE(keeper.backupFault());
}

TEST_F(BackupKeeperTest, TellsOfARestorationBeforeAnythingElseCanHappen) {
    library.add("# Old");
    keeper.backUpNow();
    ASSERT_TRUE(isIdleSoon());
    const auto backup = keeper.list().at(0);
    bool isRestored = false;
    keeper.signalRestored().connect([&] { isRestored = true; });
    keeper.restore(backup);
    EXPECT_TRUE(keeper.isRestoring());
    ASSERT_TRUE(turnUntil([&] { return isRestored; }));
    EXPECT_FALSE(keeper.restoreFault());
}

TEST_F(BackupKeeperTest, ARestorationThatFailsSaysSoAndLetsTheNextOneBegin) {
    library.add("# Old");
    keeper.backUpNow();
    ASSERT_TRUE(isIdleSoon());
    const auto backup = keeper.list().at(0);
    const auto bytes = std::filesystem::file_size(backup.store());
    const auto kept = backup.folder.string() + ".kept";
    std::filesystem::copy_file(backup.store(), kept);
    std::filesystem::resize_file(backup.store(), bytes / 2);
    bool isRestored = false;
    keeper.signalRestored().connect([&] { isRestored = true; });
    testing::internal::CaptureStdout();
    keeper.restore(backup);
    ASSERT_TRUE(isIdleSoon());
    EXPECT_TRUE(testing::internal::GetCapturedStdout().starts_with("Error restoring backup: "));
    EXPECT_EQ(keeper.restoreFault(), RestoreFault::damaged);
    EXPECT_FALSE(isRestored);

    std::filesystem::copy_file(kept, backup.store(),
                               std::filesystem::copy_options::overwrite_existing);
    keeper.restore(backup);
    EXPECT_FALSE(keeper.restoreFault());
    EXPECT_TRUE(turnUntil([&] { return isRestored; }));
}

TEST_F(BackupKeeperTest, ACancelledRestorationLeavesTheLibraryAsItIs) {
    library.add("# Old");
    keeper.backUpNow();
    ASSERT_TRUE(isIdleSoon());
    library.add("# New");
    keeper.restore(keeper.list().at(0));
    keeper.cancelRestore();
    EXPECT_FALSE(keeper.isWorking());
    library.reopen();
    EXPECT_EQ(library.titles(SidebarFilter{}, SortOption::title),
              (std::vector<std::string>{"New", "Old"}));
}

}  // namespace
}  // namespace corvel
