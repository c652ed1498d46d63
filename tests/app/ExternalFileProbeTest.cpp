#include "app/ExternalFileProbe.h"
#include "platform/FileDescriptor.h"
#include "support/OtherUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using externalFile::probe;

class ExternalFileProbeTest : public testing::Test {
protected:
    ExternalFileProbeTest() { fs::permissions(folder.path(), fs::perms(0755)); }

    /// What the whole file is refused for must be what the first look at it says.
    std::optional<ExternalFault> faultOf(const fs::path& path) {
        const auto first = probe(path).fault;
        const auto whole = externalFile::read(path);
        const auto* fault = std::get_if<ExternalFault>(&whole);
        EXPECT_EQ(first, fault != nullptr ? std::optional(*fault) : std::nullopt) << path;
        return first;
    }

    fs::path socketAt(const std::string& name) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const auto path = (folder.path() / name).string();
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(::bind(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return path;
    }

    TemporaryFolder folder;
};

TEST_F(ExternalFileProbeTest, SaysOfWhatIsNoTextFileWhatItIs) {
    const auto& path = folder.path();
    EXPECT_EQ(faultOf(folder.write("a.md", "text")), std::nullopt);
    EXPECT_EQ(faultOf(folder.write("empty.md", "")), std::nullopt);
    EXPECT_EQ(faultOf(folder.write("wide.md", std::string("\xFF\xFE"
                                                          "a\0",
                                                          4))),
              std::nullopt);
    EXPECT_EQ(faultOf(folder.write("b.md", std::string("a\0b", 3))), ExternalFault::notText);
    EXPECT_EQ(faultOf(path / "gone.md"), ExternalFault::missing);
    EXPECT_EQ(faultOf(path / "a.md/below.md"), ExternalFault::missing);
    fs::create_symlink("loop.md", path / "loop.md");
    EXPECT_EQ(faultOf(path / "loop.md"), ExternalFault::linkLoop);
    ASSERT_EQ(::mkfifo((path / "pipe.md").c_str(), 0666), 0);
    EXPECT_EQ(faultOf(path / "pipe.md"), ExternalFault::notAFile);
    EXPECT_EQ(faultOf(socketAt("socket.md")), ExternalFault::notAFile);
    fs::resize_file(folder.write("large.md", "a"), externalFile::kLargest + 1);
    EXPECT_EQ(faultOf(path / "large.md"), ExternalFault::tooLarge);
    fs::create_symlink("/proc/self/mem", path / "broken.md");
    EXPECT_EQ(faultOf(path / "broken.md"), ExternalFault::unreadable);
    EXPECT_TRUE(probe(path).isFolder);
}

TEST_F(ExternalFileProbeTest, SaysWhatOthersMayNotRead) {
    const auto file = folder.write("secret.md", "text");
    fs::permissions(file, fs::perms(0));
    const OtherUser user;
    EXPECT_EQ(faultOf(file), ExternalFault::noPermission);
    EXPECT_FALSE(probe(file).isReadable);
}

}  // namespace
}  // namespace corvel
