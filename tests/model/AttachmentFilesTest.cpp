#include "model/AttachmentFiles.h"
#include "platform/StoreError.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

namespace fs = std::filesystem;

class AttachmentFilesTest : public testing::Test {
protected:
    TemporaryFolder temporary;
    AttachmentFiles files{temporary.path() / "files"};
    Uuid id = Uuid::random();
    std::vector<std::uint8_t> data = std::vector<std::uint8_t>(300'000, 'a');
};

TEST_F(AttachmentFilesTest, ADiskThatRunsFullLeavesNoPartOfAFile) {
    {
        const FileSizeLimit full(200'000);
        EXPECT_THROW(files.write(id, data), StoreError);
    }
    EXPECT_FALSE(fs::exists(files.pathOf(id)));
    files.write(id, data);
    EXPECT_EQ(files.read(id), data);
}

// What a broken disk answers comes to the reader as no data, never as another kind of error.
TEST_F(AttachmentFilesTest, WhatCannotBeReadIsNoData) {
    EXPECT_FALSE(files.read(id));
    fs::create_directories(files.pathOf(id));
    EXPECT_FALSE(files.read(id)) << "a folder can be opened, but not read";
}

TEST_F(AttachmentFilesTest, SweepingTakesTheUnnamedAndNothingThatIsNotOurs) {
    const auto named = Uuid::random();
    files.write(id, data);
    files.write(named, data);
    temporary.write("files/notes of mine.txt", "mine");
    files.sweep({named});
    EXPECT_FALSE(fs::exists(files.pathOf(id)));
    EXPECT_TRUE(files.read(named));
    EXPECT_TRUE(fs::exists(files.folder() / "notes of mine.txt"));
}

}  // namespace
}  // namespace corvel
