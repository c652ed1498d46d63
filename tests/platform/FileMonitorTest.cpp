#include "platform/FileMonitor.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;

class FileMonitorTest : public testing::Test {
protected:
    FileMonitorTest() {
        monitor.signalChanged().connect([this] { ++told; });
    }

    // Whether an operation on files is told.
    bool tells(const std::function<void()>& operation) {
        quiet();
        told = 0;
        operation();
        return turnUntil([this] { return told > 0; }, std::chrono::seconds(5));
    }
    // Events of what was done before may still be on their way.
    void quiet() {
        turnUntil([] { return false; }, 3 * FileMonitor::kInterval);
    }

    TemporaryFolder folder;
    FileMonitor monitor;
    int told = 0;
};

TEST_F(FileMonitorTest, OfABurstTheFirstIsToldAtOnceAndTheLastOnceMore) {
    for (int i = 0; i < 10'000; ++i)
        monitor.notice();
    EXPECT_EQ(told, 1) << "no turn of the loop lies in between";
    ASSERT_TRUE(turnUntil([this] { return told == 2; }));
    quiet();
    EXPECT_EQ(told, 2);
    monitor.notice();
    EXPECT_EQ(told, 3);
}

TEST_F(FileMonitorTest, TellsWhatHappensToAFileByWhateverName) {
    const auto file = folder.write("real/a.md", "one");
    const auto link = folder.path() / "link.md";
    fs::create_symlink("real/a.md", link);
    monitor.watch(link);
    EXPECT_TRUE(tells([&] { folder.write("real/a.md", "two"); }));
    EXPECT_TRUE(tells([&] { fs::rename(folder.write("real/new", "three"), file); }));
    EXPECT_TRUE(tells([&] { fs::remove(file); }));
    EXPECT_TRUE(tells([&] { folder.write("real/a.md", "back"); }));
    EXPECT_TRUE(tells([&] {
        fs::remove(link);
        folder.write("link.md", "a file instead of the link");
    }));
}

TEST_F(FileMonitorTest, IsSilentAboutOtherFilesAndWhenStopped) {
    const auto file = folder.write("a.md", "one");
    monitor.watch(file);
    EXPECT_TRUE(tells([&] { folder.write("a.md", "two"); }));
    quiet();
    told = 0;
    folder.write("b.md", "other");
    quiet();
    EXPECT_EQ(told, 0);
    monitor.stop();
    folder.write("a.md", "three");
    quiet();
    EXPECT_EQ(told, 0);
}

}  // namespace
}  // namespace corvel
