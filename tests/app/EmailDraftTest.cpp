#include "app/EmailDraft.h"
#include "support/FileContent.h"
#include "support/FileSizeLimit.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace corvel {
namespace {

using testing::HasSubstr;

TEST(EmailDraft, WritesAPrivateFileAndSweepsThoseOfEarlierDays) {
    namespace fs = std::filesystem;
    const TemporaryFolder folder;
    const MarkdownParserService parser;
    EmailDraft draft(parser, folder.path() / "messages");
    Note note;
    note.content = "**bold**";
    std::optional<fs::path> written;
    int answers = 0;
    const auto done = [&](const std::optional<fs::path>& file) {
        written = file;
        ++answers;
    };
    draft.write(note, "first, replaced by the second", themes::builtInLight(), done);
    draft.write(note, "Subject", themes::builtInLight(), done);
    EXPECT_EQ(answers, 0);
    ASSERT_TRUE(turnUntil([&] { return answers > 0; }));
    ASSERT_TRUE(written.has_value());
    EXPECT_EQ(answers, 1);
    const std::string message = contentOf(*written);
    EXPECT_THAT(message, testing::StartsWith("Subject: Subject\r\n"));
    EXPECT_THAT(message, HasSubstr("X-Unsent: 1\r\n"));
    const auto others = fs::perms::group_all | fs::perms::others_all;
    EXPECT_EQ(fs::status(*written).permissions() & others, fs::perms::none);
    EXPECT_EQ(fs::status(written->parent_path()).permissions() & others, fs::perms::none);

    const fs::path old = folder.write("messages/old.eml", "x");
    const fs::path other = folder.write("messages/notes.txt", "x");
    const auto lastWeek = fs::file_time_type::clock::now() - std::chrono::hours(24 * 7);
    fs::last_write_time(old, lastWeek);
    fs::last_write_time(other, lastWeek);
    draft.sweep();
    EXPECT_FALSE(fs::exists(old));
    EXPECT_TRUE(fs::exists(other) && fs::exists(*written));
}

TEST(EmailDraft, ADiskWithoutRoomLeavesNoPartOfAMessage) {
    const TemporaryFolder folder;
    const MarkdownParserService parser;
    EmailDraft draft(parser, folder.path() / "messages");
    Note note;
    note.content = std::string(50'000, 'x');
    bool isAnswered = false;
    std::optional<std::filesystem::path> written;
    testing::internal::CaptureStdout();
    {
        const FileSizeLimit full(20'000);
        draft.write(note, "Subject", themes::builtInLight(), [&](const auto& file) {
            written = file;
            isAnswered = true;
        });
        EXPECT_TRUE(turnUntil([&] { return isAnswered; }));
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(), HasSubstr("Error writing message: "));
    EXPECT_FALSE(written);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "messages"));
}

}  // namespace
}  // namespace corvel
