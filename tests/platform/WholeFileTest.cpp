#include "platform/WholeFile.h"
#include "support/FileSizeLimit.h"
#include "support/Mount.h"
#include "support/OnNewFile.h"
#include "support/OtherUser.h"
#include "support/RefusedAttributes.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <optional>
#include <string_view>

namespace corvel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kAny = 1'000'000;

class WholeFileTest : public testing::Test {
protected:
    WholeFileTest() {
        fs::permissions(folder.path(), fs::perms(0755));
        note = folder.write("note.md", "old");
    }

    // Everything the program left in the folder but the note itself.
    std::size_t strays() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), {})) -
               1;
    }
    static std::string bytesOf(const fs::path& path) { return readWholeFile(path, kAny).bytes; }
    static std::optional<FileFault> faultOf(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const FileError& error) {
            return error.fault();
        }
        return std::nullopt;
    }
    std::optional<FileFault> faultOfWriting(const std::string& bytes) const {
        return faultOf([&] { writeWholeFile(note, bytes); });
    }

    TemporaryFolder folder;
    fs::path note;
};

TEST_F(WholeFileTest, KeepsModeOwnerAttributesAndTheLinkThatLeadsToTheFile) {
    ASSERT_EQ(::chmod(note.c_str(), 0640), 0);
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(note.c_str(), 1234, 4321), 0);
    }
    const bool hasAttributes = ::setxattr(note.c_str(), "user.colour", "red", 3, 0) == 0;
    fs::create_directory(folder.path() / "links");
    fs::create_symlink("../note.md", folder.path() / "links/a.md");
    fs::create_symlink("a.md", folder.path() / "links/b.md");
    struct stat before {};
    struct stat after {};
    ::stat(note.c_str(), &before);

    writeWholeFile(folder.path() / "links/b.md", "new");

    EXPECT_EQ(bytesOf(note), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path() / "links/b.md"));
    ::stat(note.c_str(), &after);
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    char colour[3] = {};
    if (hasAttributes) {
        EXPECT_EQ(::getxattr(note.c_str(), "user.colour", colour, 3), 3);
    }
}

// Where its access list cannot be kept, another file would be open to others or closed to them.
TEST_F(WholeFileTest, KeepsTheAccessListOrTheFile) {
    // Version 2: the owner and one more user write, the group and all others see nothing.
    constexpr std::string_view kList{
        "\2\0\0\0"
        "\1\0\6\0\xFF\xFF\xFF\xFF"
        "\2\0\6\0\xD2\4\0\0"
        "\4\0\0\0\xFF\xFF\xFF\xFF"
        "\x10\0\6\0\xFF\xFF\xFF\xFF"
        "\x20\0\0\0\xFF\xFF\xFF\xFF",
        44};
    constexpr auto kName = "system.posix_acl_access";
    if (::setxattr(note.c_str(), kName, kList.data(), kList.size(), 0) != 0)
        GTEST_SKIP() << "no access lists here";
    const auto list = [this] {
        std::string value(100, '\0');
        const auto size = ::getxattr(note.c_str(), kName, value.data(), value.size());
        return value.substr(0, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    };
    const auto inode = stampOf(note)->inode;
    {
        const RefusedAttributes refused;
        writeWholeFile(note, "in place");
    }
    EXPECT_EQ(list(), kList);
    EXPECT_EQ(stampOf(note)->inode, inode);
    EXPECT_EQ(strays(), 0U);
    EXPECT_EQ(writeWholeFile(note, "new").size, 3U);
    EXPECT_EQ(list(), kList);
    EXPECT_NE(stampOf(note)->inode, inode);
    EXPECT_EQ(bytesOf(note), "new");
}

TEST_F(WholeFileTest, MakesAFileWhereALinkLeadsNowhereYet) {
    fs::create_symlink("later.md", folder.path() / "link.md");
    writeWholeFile(folder.path() / "link.md", "new");
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link.md"));
    EXPECT_EQ(bytesOf(folder.path() / "later.md"), "new");
}

TEST_F(WholeFileTest, AllNamesOfAFileKeepOneText) {
    fs::create_hard_link(note, folder.path() / "other.md");
    writeWholeFile(note, "longer than before");
    EXPECT_EQ(bytesOf(folder.path() / "other.md"), "longer than before");
    writeWholeFile(note, "s");
    EXPECT_EQ(bytesOf(folder.path() / "other.md"), "s");
}

TEST_F(WholeFileTest, WritesInPlaceWhereTheFolderOrTheOwnerForbidsANewFile) {
    fs::permissions(note, fs::perms(0666));
    const auto inode = stampOf(note)->inode;
    {
        // A folder of root's that all may write to, where the owner could not be kept.
        if (::geteuid() == 0) fs::permissions(folder.path(), fs::perms(0777));
        const OtherUser user;
        writeWholeFile(note, "by somebody else");
    }
    struct stat status {};
    ::stat(note.c_str(), &status);
    EXPECT_EQ(status.st_uid, ::geteuid());
    fs::permissions(folder.path(), fs::perms(0555));
    {
        const OtherUser user;
        writeWholeFile(note, "no room for a second file");
    }
    fs::permissions(folder.path(), fs::perms(0755));
    if (::geteuid() == 0) {
        EXPECT_EQ(stampOf(note)->inode, inode);
    }
    EXPECT_EQ(bytesOf(note), "no room for a second file");
    EXPECT_EQ(strays(), 0U);
}

TEST_F(WholeFileTest, LeavesAFileThatMayNotBeWrittenOrReadAlone) {
    fs::permissions(folder.path(), fs::perms(0777));
    fs::permissions(note, fs::perms(0444));
    {
        const OtherUser user;
        EXPECT_EQ(faultOfWriting("new"), FileFault::noPermission);
        EXPECT_EQ(bytesOf(note), "old");
    }
    fs::permissions(note, fs::perms(0));
    {
        const OtherUser user;
        EXPECT_EQ(faultOf([&] { bytesOf(note); }), FileFault::noPermission);
    }
    EXPECT_EQ(strays(), 0U);
}

TEST_F(WholeFileTest, AFullVolumeLeavesTheFileWhole) {
    const std::string large(200'000, 'x');
    {
        const FileSizeLimit full(100'000);
        EXPECT_EQ(faultOfWriting(large), FileFault::diskFull);
    }
    EXPECT_EQ(bytesOf(note), "old");
    EXPECT_EQ(strays(), 0U);

    fs::create_hard_link(note, folder.path() / "other.md");
    const FileSizeLimit full(100'000);
    EXPECT_EQ(faultOfWriting(large), FileFault::diskFull);
    EXPECT_EQ(bytesOf(note), "old");
}

// File systems that cannot keep room are filled block by block.
TEST_F(WholeFileTest, AFileThatWasMadeLongerInVainIsAsLongAsBefore) {
    const auto place = folder.path() / "place";
    fs::create_directory(place);
    const Mount volume = Mount::withoutRoomToKeep(place);
    if (!volume.isMounted()) GTEST_SKIP() << "needs root";
    note = place / "note.md";
    writeWholeFile(note, "old");
    fs::create_hard_link(note, place / "other.md");
    const FileSizeLimit full(100'000);
    EXPECT_EQ(faultOfWriting(std::string(200'000, 'x')), FileFault::diskFull);
    EXPECT_EQ(bytesOf(note), "old");
}

TEST_F(WholeFileTest, RefusesWhatIsNoFileWithoutWaitingForIt) {
    const auto pipe = folder.path() / "pipe.md";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    fs::create_symlink("loop.md", folder.path() / "loop.md");
    const std::pair<fs::path, FileFault> cases[] = {
        {folder.path(), FileFault::folder},   {pipe, FileFault::notAFile},
        {"/dev/null", FileFault::notAFile},   {folder.path() / "loop.md", FileFault::linkLoop},
        {note / "below", FileFault::missing},
    };
    for (const auto& refused : cases) {
        SCOPED_TRACE(refused.first);
        EXPECT_EQ(faultOf([&] { bytesOf(refused.first); }), refused.second);
        EXPECT_EQ(faultOf([&] { writeWholeFile(refused.first, "new"); }), refused.second);
    }
    EXPECT_EQ(faultOf([&] { bytesOf(folder.path() / "gone.md"); }), FileFault::missing);
    EXPECT_EQ(faultOf([&] { readWholeFile(note, 2); }), FileFault::tooLarge);
}

TEST_F(WholeFileTest, OverwritesNothingThatItDidNotExpect) {
    const auto known = readWholeFile(note, kAny).stamp;
    folder.write("note.md", "theirs");
    EXPECT_EQ(faultOf([&] { writeWholeFile(note, "mine", known); }), FileFault::changed);
    EXPECT_EQ(bytesOf(note), "theirs");
    fs::create_hard_link(note, folder.path() / "other.md");  // would be written in place
    EXPECT_EQ(faultOf([&] { writeWholeFile(note, "mine", known); }), FileFault::changed);
    EXPECT_EQ(bytesOf(note), "theirs");
    fs::remove(note);
    EXPECT_EQ(faultOf([&] { writeWholeFile(note, "mine", known); }), FileFault::missing);
    EXPECT_FALSE(fs::exists(note));
}

TEST_F(WholeFileTest, OverwritesNothingThatCameWhileItWasWriting) {
    const auto known = readWholeFile(note, kAny).stamp;
    bool isWritten = false;
    {
        const OnNewFile others(folder.path(), [&] {
            std::ofstream(note) << "theirs";
            isWritten = true;
        });
        EXPECT_EQ(faultOf([&] { writeWholeFile(note, "mine", known); }), FileFault::changed);
    }
    EXPECT_TRUE(isWritten);
    EXPECT_EQ(bytesOf(note), "theirs");
    EXPECT_EQ(strays(), 0U);
}

TEST_F(WholeFileTest, AWrittenFileBearsTheStampThatWasGivenBack) {
    const auto written = writeWholeFile(note, "new");
    EXPECT_EQ(stampOf(note), written);
    EXPECT_EQ(written.size, 3U);
    EXPECT_NO_THROW(writeWholeFile(note, "newer", written));
}

TEST(FileStamp, IsTrustedOnlyWhenTheClockHasGoneOn) {
    FileStamp stamp;
    stamp.changedAt = 5'000'000'000;
    EXPECT_FALSE(stamp.isSettled(Date{5'001'000}));
    EXPECT_TRUE(stamp.isSettled(Date{6'000'000}));
    EXPECT_FALSE(stamp.isSettled(Date{1'000'000})) << "the clock was set back";
}

TEST(FileStamp, ANumberGivenToAnotherFileMakesItNoSameFile) {
    FileStamp gone{1, 42, 1000, 1000, 5};
    FileStamp young{1, 42, 2000, 2000, 5};
    EXPECT_FALSE(gone.isSameFile(young));
    young = gone;
    young.device = 7;  // mounted anew
    EXPECT_TRUE(gone.isSameFile(young));
    gone.bornAt = 0;  // a file system that does not tell
    EXPECT_FALSE(gone.isSameFile(young));
}

}  // namespace
}  // namespace corvel
