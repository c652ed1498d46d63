#include "library/Bookmark.h"
#include "library/BookmarkManager.h"
#include "library/MovedFileSearch.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using State = BookmarkManager::State;

class BookmarkTest : public testing::Test {
protected:
    BookmarkTest() : note(folder.write("notes/note.md", "# Text\r\n")), bookmark(markOf(note)) {}

    Bookmark markOf(const fs::path& path) const {
        const auto linked = manager.read(path);
        return manager.make(path, linked.file.stamp, linked.file.bytes, linked.text);
    }
    // How the file is found, and what is logged on the way.
    BookmarkManager::Resolution resolve() {
        testing::internal::CaptureStdout();
        auto resolution = manager.resolve(bookmark);
        log = testing::internal::GetCapturedStdout();
        return resolution;
    }
    std::optional<fs::path> searched() const {
        MovedFileSearch search(note, bookmark.stamp, 2'000);
        while (search.step()) {
        }
        return search.found();
    }

    TemporaryFolder folder;
    fs::path note;
    BookmarkManager manager;
    Bookmark bookmark;
    std::string log;
};

TEST_F(BookmarkTest, BytesGiveTheBookmarkBackWhateverTheNameIsMadeOf) {
    bookmark.path = folder.path() / "caf\xE9 \n.md";
    const auto bytes = bookmark.encoded();
    EXPECT_EQ(Bookmark::decode(bytes), bookmark);
    EXPECT_NE(bookmark.fileHash, bookmark.noteHash) << "line ends differ";
}

TEST_F(BookmarkTest, TornForeignAndLaterBytesAreNoBookmark) {
    const auto bytes = bookmark.encoded();
    const std::size_t head = bytes.size() - bookmark.path.native().size();
    for (std::size_t size = 0; size <= head; ++size) {
        EXPECT_FALSE(Bookmark::decode({bytes.begin(), bytes.begin() + static_cast<long>(size)}));
    }
    auto later = bytes;
    later[4] = 2;
    EXPECT_FALSE(Bookmark::decode(later));
    auto relative = bytes;
    relative[head] = 'x';
    EXPECT_FALSE(Bookmark::decode(relative));
}

TEST_F(BookmarkTest, TheSameFileAtItsPlaceIsFreshAlsoWhenItWasWrittenTo) {
    folder.write("notes/note.md", "more");
    EXPECT_EQ(resolve().state, State::fresh);
    EXPECT_EQ(log, "");
}

TEST_F(BookmarkTest, AFileThatAnEditorReplacedIsFollowed) {
    fs::rename(folder.write("notes/new", "new"), note);
    EXPECT_EQ(resolve().state, State::stale);
    EXPECT_EQ(log, "[BookmarkManager] Bookmark is stale for: " + note.string() + "\n");
    // The old file goes on as a backup: the place counts, not the inode.
    fs::rename(note, folder.path() / "notes/note.md~");
    folder.write("notes/note.md", "newest");
    EXPECT_EQ(resolve().path, note);
}

TEST_F(BookmarkTest, ARenamedFileIsFoundInItsFolder) {
    fs::rename(note, folder.path() / "notes/renamed.md");
    const auto found = resolve();
    EXPECT_EQ(found.state, State::stale);
    EXPECT_EQ(found.path, folder.path() / "notes/renamed.md");
}

TEST_F(BookmarkTest, AnotherFileWithTheOldNumberIsNotTakenForIt) {
    fs::rename(note, folder.path() / "notes/renamed.md");
    bookmark.stamp.bornAt -= 1;
    if (bookmark.stamp.bornAt == -1) GTEST_SKIP() << "no times of birth here";
    EXPECT_EQ(resolve().state, State::missing);
    EXPECT_EQ(searched(), std::nullopt);
}

TEST_F(BookmarkTest, AMovedFileIsFoundNearbyAndWithARenamedFolder) {
    const auto deep = folder.path() / "other/deep/moved.md";
    fs::create_directories(deep.parent_path());
    fs::rename(note, deep);
    EXPECT_EQ(resolve().state, State::missing);
    EXPECT_EQ(searched(), deep);

    fs::rename(folder.path() / "notes", folder.path() / "renamed");
    EXPECT_EQ(searched(), deep);
}

TEST_F(BookmarkTest, AFileInTheTrashIsGone) {
    fs::create_directories(folder.path() / ".local/share/Trash/files");
    fs::rename(note, folder.path() / ".local/share/Trash/files/note.md");
    EXPECT_EQ(searched(), std::nullopt);
}

}  // namespace
}  // namespace corvel
