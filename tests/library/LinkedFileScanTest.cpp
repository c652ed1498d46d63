#include "library/LinkedFileScan.h"
#include "library/LocalFileNotes.h"
#include "support/TestLibrary.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class LinkedFileScanTest : public testing::Test {
protected:
    Uuid linked(const fs::path& name, const std::string& text) {
        return LocalFileNotes(library->notes).create(folder.write(name, text)).id;
    }
    void scan(const std::optional<Uuid>& openNote = {}) {
        LinkedFileScan scan(library->notes);
        while (scan.work(1ms, openNote)) {
        }
    }
    void changeNote(const Uuid& id, const std::string& text) {
        auto note = library.stored(id);
        note.content = text;
        library->notes.update(note);
    }

    TemporaryFolder folder;
    TestLibrary library;
};

TEST_F(LinkedFileScanTest, TakesOverWhatOthersWroteAndNothingElse) {
    const auto changed = linked("changed.md", "# Old\n");
    const auto both = linked("both.md", "base\n");
    const auto mine = linked("mine.md", "base\n");
    const auto open = linked("open.md", "base\n");
    const auto trashed = linked("trashed.md", "base\n");
    const auto same = linked("same.md", "base\n");
    library->notes.moveToTrash(trashed);
    changeNote(both, "mine\n");
    changeNote(mine, "mine\n");
    changeNote(same, "same\n");
    for (const auto* name : {"both.md", "open.md", "trashed.md"})
        folder.write(name, "theirs\n");
    folder.write("changed.md", "# New\n");
    folder.write("same.md", "same\n");

    scan(open);

    EXPECT_EQ(library.stored(changed).content, "# New\n");
    EXPECT_EQ(library.stored(changed).title, "New");
    EXPECT_EQ(library.stored(both).content, "mine\n");
    EXPECT_EQ(library.stored(mine).content, "mine\n");
    EXPECT_EQ(library.stored(open).content, "base\n");
    EXPECT_EQ(library.stored(trashed).content, "base\n");
    EXPECT_EQ(Bookmark::decode(*library.stored(same).bookmarkData)->noteHash, hashOf("same\n"));
    // A conflict stays one however often it is looked at, and what waits to be written waits.
    scan();
    EXPECT_EQ(library.stored(both).content, "mine\n");
    EXPECT_EQ(Bookmark::decode(*library.stored(both).bookmarkData)->fileHash, hashOf("base\n"));
    EXPECT_EQ(Bookmark::decode(*library.stored(mine).bookmarkData)->noteHash, hashOf("base\n"));
}

TEST_F(LinkedFileScanTest, FindsRenamedFilesAndPassesOverThoseThatHaveGone) {
    const auto renamed = linked("a.md", "base\n");
    const auto gone = linked("b.md", "base\n");
    fs::rename(folder.path() / "a.md", folder.path() / "c.md");
    folder.write("c.md", "theirs\n");
    fs::remove(folder.path() / "b.md");
    const Note before = library.stored(gone);
    scan();
    EXPECT_EQ(library.stored(renamed).sourceFilePath, (folder.path() / "c.md").string());
    EXPECT_EQ(library.stored(renamed).content, "theirs\n");
    EXPECT_EQ(library.stored(gone), before);
}

// Between two slices the user goes on: what was read at the start is old by then.
TEST_F(LinkedFileScanTest, LeavesNotesThatGotAnotherLinkMeanwhile) {
    const auto first = linked("first.md", "base\n");
    const auto stopped = linked("stopped.md", "base\n");
    const auto moved = linked("moved.md", "base\n");
    const auto trashed = linked("trashed.md", "base\n");
    folder.write("first.md", "theirs\n");
    LinkedFileScan scan(library->notes);
    ASSERT_TRUE(scan.work(0ms, {}));
    ASSERT_EQ(library.stored(first).content, "theirs\n");

    LocalFileNotes(library->notes).stopTracking(stopped);
    LocalFileNotes(library->notes).relink(moved, folder.write("new.md", "base\n"));
    library->notes.moveToTrash(trashed);
    for (const auto* name : {"stopped.md", "moved.md", "trashed.md"})
        folder.write(name, "theirs\n");
    while (scan.work(1ms, {})) {
    }
    EXPECT_EQ(library.stored(stopped).content, "base\n");
    EXPECT_FALSE(library.stored(stopped).sourceFilePath);
    EXPECT_EQ(library.stored(moved).content, "base\n");
    EXPECT_EQ(library.stored(moved).sourceFilePath, (folder.path() / "new.md").string());
    EXPECT_EQ(library.stored(trashed).content, "base\n");
}

}  // namespace
}  // namespace corvel
