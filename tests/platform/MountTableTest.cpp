#include "platform/MountTable.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;

class MountTableTest : public testing::Test {
protected:
    void mount(const fs::path& point, const std::string& type) {
        std::string escaped;
        for (const char letter : point.string())
            escaped += letter == ' ' ? std::string("\\040") : std::string(1, letter);
        lines += "36 35 98:0 / " + escaped + " rw,noatime shared:1 master:2 - " + type + " x rw\n";
    }
    std::optional<fs::path> distantOnTheWayTo(const fs::path& path) const {
        return MountTable(folder.write("mountinfo", lines)).distantOnTheWayTo(path);
    }

    TemporaryFolder folder;
    fs::path root = folder.path();
    std::string lines = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
};

TEST_F(MountTableTest, FindsTheFirstDistantVolumeOnTheWay) {
    mount(root / "server", "nfs4");
    mount(root / "server/disk", "ext4");
    mount(root / "with blank", "fuse.sshfs");
    mount(root / "disk", "fuseblk");
    EXPECT_EQ(distantOnTheWayTo(root / "server/a/b.md"), root / "server");
    EXPECT_EQ(distantOnTheWayTo(root / "server/disk/b.md"), root / "server");
    EXPECT_EQ(distantOnTheWayTo(root / "a/../server"), root / "server");
    EXPECT_EQ(distantOnTheWayTo(root / "with blank/b.md"), root / "with blank");
    EXPECT_EQ(distantOnTheWayTo(root / "servers/b.md"), std::nullopt);
    EXPECT_EQ(distantOnTheWayTo(root / "server/../b.md"), root / "server") << "it passes there";
    EXPECT_EQ(distantOnTheWayTo(root / "disk/b.md"), std::nullopt);
}

TEST_F(MountTableTest, FollowsLinksUpToTheVolume) {
    mount(root / "server", "cifs");
    fs::create_directory(root / "notes");
    fs::create_symlink("../server/notes", root / "notes/relative");
    fs::create_symlink(root / "notes/relative", root / "absolute");
    fs::create_symlink("loop", root / "loop");
    EXPECT_EQ(distantOnTheWayTo(root / "notes/relative/b.md"), root / "server");
    EXPECT_EQ(distantOnTheWayTo(root / "absolute/b.md"), root / "server");
    EXPECT_EQ(distantOnTheWayTo(root / "notes/b.md"), std::nullopt);
    EXPECT_EQ(distantOnTheWayTo(root / "loop/b.md"), std::nullopt);
}

TEST_F(MountTableTest, OfSeveralVolumesOnOnePointTheLastIsSeen) {
    mount(root / "home", "autofs");
    mount(root / "home", "ext4");
    EXPECT_EQ(distantOnTheWayTo(root / "home/b.md"), std::nullopt);
    mount(root / "home", "nfs");
    EXPECT_EQ(distantOnTheWayTo(root / "home/b.md"), root / "home");
}

}  // namespace
}  // namespace corvel
