#include "app/AppDelegate.h"
#include "app/ExternalFileProbe.h"
#include "library/Notifications.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Paths = AppDelegate::Paths;

class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        delegate.signalAsked().connect([this](const auto& asked) { questions.push_back(asked); });
        delegate.signalFolders().connect([this](const Paths& found) { folders = found; });
        delegate.signalFinished().connect([this](const auto& what) { reports.push_back(what); });
        m_imports = center.observe(notifications::importExternalFile, [this](const auto& payload) {
            imported.push_back(std::any_cast<ExternalFile>(payload));
        });
        m_previews = center.observe(notifications::openMarkdownPreview, [this](const auto& path) {
            previewed.push_back(std::any_cast<std::filesystem::path>(path));
        });
    }

    std::filesystem::path file(const std::string& name, const std::string& text = "# Text") {
        return folder.write(name, text);
    }
    void finish() {
        ASSERT_TRUE(turnUntil([this] { return !reports.empty(); }));
    }
    std::vector<ExternalFault> faults() const {
        std::vector<ExternalFault> found;
        for (const auto& problem : reports.back().problems)
            found.push_back(problem.fault);
        return found;
    }
    std::vector<std::string> linkedTitles() const {
        return library.titles({SidebarFilter::Kind::localFiles, {}, {}});
    }

    TemporaryFolder folder;
    TestLibrary library;
    UserDefaults defaults{folder.path() / "preferences"};
    Preferences preferences{defaults};
    NotificationCenter center;
    NoteListViewModel list{*library, center};
    AppDelegate delegate{*library, list, preferences, center};
    std::vector<AppDelegate::Question> questions;
    std::vector<AppDelegate::Report> reports;
    std::vector<ExternalFile> imported;
    Paths previewed;
    Paths folders;

private:
    ScopedConnection m_imports;
    ScopedConnection m_previews;
};

TEST_F(AppDelegateTest, AsksOnceForManyFilesAndLogsWhatItDoes) {
    const auto first = file("a.md", "\xEF\xBB\xBF# Zażółć");
    const auto second = file("B.MARKDOWN", "two");
    testing::internal::CaptureStdout();
    delegate.open({first, second, first});
    ASSERT_TRUE(turnUntil([this] { return !questions.empty(); }));
    EXPECT_EQ(questions.front().count, 2U);
    EXPECT_EQ(questions.front().first, first);
    EXPECT_THAT(imported, IsEmpty());  // nothing is done without an answer
    delegate.answer(ExternalFileUse::import);
    finish();
    const auto log = testing::internal::GetCapturedStdout();
    EXPECT_THAT(log, HasSubstr("[AppDelegate] Opening 2 markdown file(s)\n"));
    EXPECT_THAT(
        log, HasSubstr("[AppDelegate] Processing: " + first.string() + ", sandboxAccess: true\n"));
    EXPECT_THAT(log, HasSubstr("[AppDelegate] Bookmark created: " + second.string() + "\n"));
    ASSERT_EQ(imported.size(), 2U);
    EXPECT_EQ(imported[0].content, "# Zażółć");
    EXPECT_EQ(imported[0].path, first);
    EXPECT_EQ(Bookmark::decode(imported[0].bookmark)->path, first);
    EXPECT_EQ(questions.size(), 1U);
    EXPECT_THAT(reports.back().problems, IsEmpty());
}

TEST_F(AppDelegateTest, LinksAsRememberedAndOpensALinkedFileWithoutAQuestion) {
    const auto path = file("plan.md", "# Plan");
    preferences.setOpenExternalFiles(ExternalFileUse::link);
    delegate.open({path});
    finish();
    EXPECT_THAT(linkedTitles(), ElementsAre("Plan"));
    const auto note = reports.back().lastNoteID;
    ASSERT_TRUE(note.has_value());

    preferences.setOpenExternalFiles(ExternalFileUse::ask);
    reports.clear();
    std::filesystem::create_symlink(path, folder.path() / "other.md");
    delegate.open({folder.path() / "other.md"});
    finish();
    EXPECT_EQ(reports.back().lastNoteID, note);
    EXPECT_THAT(questions, IsEmpty());
    EXPECT_THAT(linkedTitles(), ElementsAre("Plan"));
}

TEST_F(AppDelegateTest, RefusesEachBadFileInWordsAndOpensTheOthers) {
    const auto good = file("good.md");
    const auto pipe = folder.path() / "pipe.md";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto loop = folder.path() / "loop.md";
    std::filesystem::create_symlink(loop, loop);
    const auto huge = file("huge.md");
    std::filesystem::resize_file(huge, externalFile::kLargest + 1);  // a hole
    const auto subfolder = folder.path() / "folder.md";
    std::filesystem::create_directory(subfolder);
    preferences.setOpenExternalFiles(ExternalFileUse::import);
    delegate.open({folder.path() / "gone.md", pipe, loop, huge, subfolder,
                   file("binary.md", std::string("a\0b", 3)), file("picture.png"), good},
                  {"sftp://host/x.md"});
    finish();
    using enum ExternalFault;
    EXPECT_THAT(faults(), UnorderedElementsAre(elsewhere, notMarkdown, missing, notAFile, linkLoop,
                                               tooLarge, notText));
    EXPECT_THAT(folders, ElementsAre(subfolder));
    ASSERT_EQ(imported.size(), 1U);
    EXPECT_EQ(imported[0].path, good);
}

TEST_F(AppDelegateTest, ReportsAFileThatVanishedWhileTheQuestionWasOpen) {
    const auto path = file("a.md");
    delegate.open({path});
    ASSERT_TRUE(turnUntil([this] { return !questions.empty(); }));
    std::filesystem::remove(path);
    delegate.answer(ExternalFileUse::link);
    finish();
    EXPECT_THAT(faults(), ElementsAre(ExternalFault::missing));
    EXPECT_THAT(linkedTitles(), IsEmpty());
}

TEST_F(AppDelegateTest, LinksOnlyUtf8AndSaysSo) {
    preferences.setOpenExternalFiles(ExternalFileUse::link);
    delegate.open({file("old.md", "za\xBF\xF3\xB3\xE6"), file("new.md", "# New")});
    finish();
    EXPECT_THAT(faults(), ElementsAre(ExternalFault::notUtf8));
    EXPECT_THAT(linkedTitles(), ElementsAre("New"));
}

TEST_F(AppDelegateTest, FilesThatComeDuringAQuestionGetOneQuestionTogether) {
    delegate.open({file("a.md")});
    ASSERT_TRUE(turnUntil([this] { return questions.size() == 1; }));
    delegate.open({file("b.md")});
    delegate.open({file("c.md")});
    delegate.answer(ExternalFileUse::ask);  // cancelled
    ASSERT_TRUE(turnUntil([this] { return questions.size() == 2; }));
    EXPECT_EQ(questions.back().count, 2U);
    delegate.answer(ExternalFileUse::preview);
    ASSERT_TRUE(turnUntil([this] { return reports.size() == 2; }));
    EXPECT_THAT(previewed, ElementsAre(folder.path() / "b.md", folder.path() / "c.md"));
}

TEST_F(AppDelegateTest, AsksRatherThanOpenAWindowForEachOfManyFiles) {
    preferences.setOpenExternalFiles(ExternalFileUse::preview);
    Paths many;
    for (std::size_t i = 0; i <= AppDelegate::kMostPreviews; ++i)
        many.push_back(file(std::to_string(i) + ".md"));
    delegate.open(many);
    ASSERT_TRUE(turnUntil([this] { return !questions.empty(); }));
    EXPECT_FALSE(questions.front().canPreview);
    EXPECT_THAT(previewed, IsEmpty());
}

}  // namespace
}  // namespace corvel
