#include "library/MarkdownImages.h"
#include "library/MarkdownImporter.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/Mount.h"
#include "support/TestLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <memory>
#include <optional>

namespace corvel {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

const std::string kPng("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);

class MarkdownImporterTest : public testing::Test {
protected:
    ImportReport import(const std::vector<fs::path>& paths, ImportOptions options = {}) {
        MarkdownImporter importer(*library);
        ImportReport result;
        int answers = 0;
        importer.start(paths, options, {}, [&](const ImportReport& report) {
            result = report;
            ++answers;
        });
        EXPECT_EQ(answers, 0);
        EXPECT_TRUE(turnUntil([&] { return answers > 0; }));
        EXPECT_EQ(answers, 1);
        EXPECT_FALSE(importer.isRunning());
        return result;
    }

    std::vector<Note> notes() {
        return library->notes.fetchNotes(SidebarFilter{}, SortOption::title);
    }
    std::vector<std::string> titles() {
        std::vector<std::string> found;
        for (const auto& note : notes())
            found.push_back(note.title);
        return found;
    }

    std::vector<std::string> folderNames() {
        std::vector<std::string> found;
        for (const auto& folder : library->folders.fetchAllFolders())
            found.push_back(folder.name);
        return found;
    }

    TestLibrary library;
    TemporaryFolder disk;
};

std::vector<std::string> pathsIn(const std::string& markdown) {
    std::vector<std::string> paths;
    for (const auto& image : imageReferencesIn(markdown))
        paths.push_back(image.path);
    return paths;
}

}  // namespace

TEST(MarkdownImages, FindsEveryWayToShowARelativeImage) {
    EXPECT_THAT(pathsIn("![](a.png) ![x](<b c.png> \"T\") ![y](d%20e.png 'T') ![](f\\(1\\).png)"),
                ElementsAre("a.png", "b c.png", "d e.png", "f(1).png"));
    EXPECT_THAT(pathsIn("![](g(2).png)\n<IMG alt='>x' SRC=\"../h.png\"> <img src=i.png>"),
                ElementsAre("g(2).png", "../h.png", "i.png"));
    EXPECT_THAT(
        pathsIn("![Alt][Ref  One] ![two][] ![three]\n\n[ref one]: r1.png\n[TWO]: <r 2.png> 'T'\n"
                "[three]: r3.png\n[three]: no.png\n[four]: no.png"),
        ElementsAre("r1.png", "r 2.png", "r3.png"));
    EXPECT_THAT(pathsIn("[![](in/link.png)](x) ![a [b] c](n.png)"),
                ElementsAre("in/link.png", "n.png"));
}

TEST(MarkdownImages, LeavesCodeAndOtherAddressesAlone) {
    EXPECT_THAT(pathsIn("`![](a.png)` ``x ` ![](b.png)`` \\![](c.png) ```\n![](d.png)"),
                ElementsAre("d.png"));  // that paragraph's last run closes nothing
    EXPECT_THAT(pathsIn("```md\n![](a.png)\n~~~\n``\n````\n![](b.png)"), ElementsAre("b.png"));
    EXPECT_THAT(pathsIn("> ~~~\n> <img src=a.png>\n> ~~~\n- ```\n  ![](b.png)\n  ```\n![](c.png)"),
                ElementsAre("c.png"));
    EXPECT_THAT(pathsIn("`open\n\n![](a.png) `"), ElementsAre("a.png"));
    EXPECT_THAT(pathsIn("![](http://x/a.png) ![](/etc/a.png) ![](data:image/png;base64,AA) ![](#a)"
                        " ![](//x/y.png) ![]() ![](a b.png) ![](nul%00.png) <img src=''> ![](open"),
                IsEmpty());
}

TEST(MarkdownImages, StaysLinearForHostileText) {
    std::string text;
    for (const char* part : {"![](", "![[", "<img ", "![a](<", "[x]: ", "`", "```` `"}) {
        for (int i = 0; i < 20'000; ++i)
            text += part;
    }
    // Time of this process alone, so that other work on the machine does not count; what is not
    // linear takes minutes.
    const auto start = std::clock();
    pathsIn(text);
    EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
}

TEST_F(MarkdownImporterTest, TakesWholeFoldersWithDatesAndFolders) {
    const auto one = disk.write("in/a.md", "# One\r\ntext #tag\r\n");
    disk.write("in/Work/b.MARKDOWN", "Two");
    disk.write("in/Work/2026/c.txt", "\xEF\xBB\xBF# Three");
    disk.write("in/Work/d.mkd", "# Four");
    disk.write("in/Work/e.pdf", "%PDF");
    const std::chrono::sys_time<std::chrono::nanoseconds> written(1'589'673'600s);
    fs::last_write_time(one, std::chrono::file_clock::from_sys(written));
    ImportOptions options;
    options.keepFolders = true;
    const auto report = import({disk.path() / "in"}, options);
    EXPECT_EQ(report.imported, 4U);
    EXPECT_THAT(report.skipped, IsEmpty());
    EXPECT_THAT(titles(), UnorderedElementsAre("One", "Two", "Three", "Four"));
    for (const auto& note : notes()) {
        if (note.title != "One") continue;
        EXPECT_EQ(note.content, "# One\r\ntext #tag\r\n");
        EXPECT_EQ(note.modifiedAt.seconds(), 1'589'673'600);
        EXPECT_EQ(note.createdAt, note.modifiedAt);
        EXPECT_THAT(note.folderIDs, IsEmpty());
        EXPECT_EQ(pathsOf(note), std::vector<std::string>{"tag"});
    }
    const auto roots = library->folders.fetchRootFolders();
    ASSERT_EQ(roots.size(), 1U);
    EXPECT_EQ(roots[0].name, "Work");
    EXPECT_EQ(roots[0].noteCount, 2);
    ASSERT_EQ(roots[0].children.size(), 1U);
    EXPECT_EQ(roots[0].children[0].name, "2026");
    import({disk.path() / "in"}, options);
    EXPECT_EQ(library->folders.fetchAllFolders().size(), 2U);  // used again
}

TEST_F(MarkdownImporterTest, ReadsOtherEncodingsAndRefusesWhatIsNoText) {
    disk.write("1.md", std::string("\xFF\xFE\x5A\0\x7C\x01", 6));
    disk.write("2.md", std::string("\xFE\xFF\0\x5A\x01\x7C", 6));
    disk.write("3.md", "Za\xBF\xF3\xB3\xE6");
    disk.write("4.md", std::string("a\0b", 3));
    disk.write("5.md", "\xFF\xFEx");
    disk.write("6.md", "a\x81\x83");
    disk.write("7.md", "");
    const auto report = import({disk.path()});
    EXPECT_THAT(titles(), UnorderedElementsAre("Zż", "Zż", "Zażółć", "Untitled"));
    ASSERT_EQ(report.skipped.size(), 3U);
    for (const auto& skipped : report.skipped)
        EXPECT_EQ(skipped.reason, ImportFault::notText);
}

TEST_F(MarkdownImporterTest, GetsPastLoopsPipesAndWhatCannotBeRead) {
    disk.write("in/sub/a.md", "A");
    fs::create_directory_symlink("..", disk.path() / "in/sub/up");
    fs::create_directory_symlink("sub", disk.path() / "in/again");
    fs::create_directory(disk.path() / "in/folder.md");
    fs::create_symlink("nowhere", disk.path() / "in/broken.md");
    ASSERT_EQ(::mkfifo((disk.path() / "in/pipe.md").c_str(), 0600), 0);
    const auto report = import({disk.path() / "in", "/dev/null", disk.path() / "gone.md"});
    EXPECT_THAT(titles(), ElementsAre("A"));
    std::map<std::string, ImportFault> reasons;
    for (const auto& skipped : report.skipped)
        reasons[skipped.path.filename()] = skipped.reason;
    const std::map<std::string, ImportFault> expected = {{"broken.md", ImportFault::unreadable},
                                                         {"pipe.md", ImportFault::notAFile},
                                                         {"null", ImportFault::notAFile},
                                                         {"gone.md", ImportFault::unreadable}};
    EXPECT_EQ(reasons, expected);
}

// A server that is gone: whatever touches a file there would wait for it.
TEST_F(MarkdownImporterTest, ASilentVolumeHoldsNothingUp) {
    const auto drive = disk.path() / "drive";
    disk.write("drive/there.md", "There");
    disk.write("in/a.md", "A ![](../drive/picture.png)");
    fs::create_symlink(drive / "there.md", disk.path() / "in/link.md");
    const Mount silent = Mount::silent(drive);
    if (!silent.isMounted()) GTEST_SKIP() << "needs root and FUSE";
    const auto report = import({disk.path() / "in", drive, drive / "there.md"});
    EXPECT_EQ(report.imported, 1U);
    EXPECT_THAT(report.missingImages, ElementsAre(drive / "picture.png"));
    ASSERT_EQ(report.skipped.size(), 3U);
    for (const auto& skipped : report.skipped)
        EXPECT_EQ(skipped.reason, ImportFault::noAnswer) << skipped.path;
}

TEST_F(MarkdownImporterTest, GoesOnWithoutAVolumeThatFallsSilent) {
    const auto drive = disk.path() / "drive";
    disk.write("drive/there.md", "There");
    disk.write("here.md", "Here");
    MarkdownImporter importer(*library);
    std::unique_ptr<Mount> silent;
    std::optional<ImportReport> result;
    importer.start(
        {drive, disk.path() / "here.md"}, {},
        [&](std::size_t, std::size_t found) {
            if (found == 2 && !silent) silent.reset(new Mount(Mount::silent(drive)));
        },
        [&](const ImportReport& report) { result = report; });
    ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
    ASSERT_TRUE(silent);
    if (!silent->isMounted()) GTEST_SKIP() << "needs root and FUSE";
    EXPECT_EQ(result->imported, 1U);
    ASSERT_EQ(result->skipped.size(), 1U);
    EXPECT_EQ(result->skipped[0].reason, ImportFault::noAnswer);
}

TEST_F(MarkdownImporterTest, ImagesOfTheTextBecomeAttachments) {
    disk.write("img/a b.png", kPng);
    disk.write("secret.txt", "no image");
    disk.write("large.png", "");
    fs::resize_file(disk.path() / "large.png", 64 * 1024 * 1024 + 1);
    const std::string text =
        "![A](../img/a%20b.png \"T\") `![](../img/a%20b.png)`\n<img src=\"../img/a b.png\">"
        "![](../secret.txt) ![](gone.png) ![](../large.png) ![](http://x/y.png)";
    const auto another = disk.write("notes/a.md", "![](gone.png)");
    const auto report = import({another, disk.write("notes/n.md", text)});
    ASSERT_EQ(report.imported, 2U);
    const auto note = library.stored(*report.lastNoteID);
    const auto attachments = library->attachments.fetchAttachments(note.id);
    ASSERT_EQ(attachments.size(), 1U);
    EXPECT_EQ(attachments[0].filename, "a b.png");
    EXPECT_EQ(attachments[0].mimeType, "image/png");
    EXPECT_EQ(std::string(attachments[0].data.begin(), attachments[0].data.end()), kPng);
    const auto url = "attachment://" + attachments[0].id.toString();
    EXPECT_EQ(note.content,
              "![A](" + url + " \"T\") `![](../img/a%20b.png)`\n<img src=\"" + url +
                  "\">![](../secret.txt) ![](gone.png) ![](../large.png) ![](http://x/y.png)");
    EXPECT_THAT(report.missingImages,
                ElementsAre(disk.path() / "notes/gone.png", disk.path() / "secret.txt",
                            disk.path() / "large.png"));
}

TEST_F(MarkdownImporterTest, CancelKeepsWhatIsInAndAnswersOnce) {
    for (int i = 0; i < 2000; ++i)
        disk.write(std::to_string(i) + ".md", "# " + std::to_string(i));
    MarkdownImporter importer(*library);
    std::optional<ImportReport> answer;
    importer.start(
        {disk.path()}, {},
        [&](std::size_t done, std::size_t found) {
            if (done == 0) return;
            EXPECT_EQ(found, 2000U);
            importer.cancel();
        },
        [&](const ImportReport& report) { answer = report; });
    ASSERT_TRUE(turnUntil([&] { return answer.has_value(); }));
    EXPECT_TRUE(answer->wasCancelled);
    EXPECT_GT(answer->imported, 0U);
    EXPECT_LT(answer->imported, 2000U);
    EXPECT_EQ(answer->notReached, 2000U - answer->imported);
    EXPECT_EQ(notes().size(), answer->imported);
}

TEST_F(MarkdownImporterTest, AFullDiskLeavesNothingHalfImported) {
    library.close();
    FullDisk::makePossible();
    library.open();
    disk.write("in/a.png", kPng + std::string(200'000, 'x'));
    disk.write("in/1.md", "# One\n![](a.png)");
    disk.write("in/2.md", "# Two");
    {
        const FullDisk full;
        const auto report = import({disk.path() / "in"});
        EXPECT_EQ(report.imported, 0U);
        ASSERT_EQ(report.skipped.size(), 2U);
        EXPECT_EQ(report.skipped[0].reason, ImportFault::storeFailed);
    }
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(library.folder() / "qnoCorvel_files"));
    library->folders.createFolder("a later save", {});
    EXPECT_THAT(titles(), IsEmpty());
    EXPECT_EQ(import({disk.path() / "in"}).imported, 2U);
    library.reopen();
    EXPECT_THAT(titles(), UnorderedElementsAre("One", "Two"));
}

TEST_F(MarkdownImporterTest, AFileThatTheStoreRefusesSpoilsNoOther) {
    for (int i = 0; i < 100; ++i)
        disk.write("in/" + std::to_string(i) + ".md", "# " + std::to_string(i));
    disk.write("in/long.md", "# Long\n" + std::string(300'000, 'x'));
    disk.write("in/shown.png", kPng + std::string(200'000, 'x'));
    disk.write("in/with.md", "# Image\n![](shown.png)\n" + std::string(300'000, 'x'));
    auto* store = library->controller.viewContext().database().handle();
    const int usual = sqlite3_limit(store, SQLITE_LIMIT_LENGTH, 250'000);
    const auto report = import({disk.path() / "in"});
    sqlite3_limit(store, SQLITE_LIMIT_LENGTH, usual);
    EXPECT_EQ(report.imported, 100U);
    ASSERT_EQ(report.skipped.size(), 2U);
    EXPECT_EQ(report.skipped[0].reason, ImportFault::storeFailed);
    EXPECT_EQ(notes().size(), 100U);
    library.reopen();
    EXPECT_EQ(notes().size(), 100U);
}

TEST_F(MarkdownImporterTest, AFolderRefusedByAFullDiskComesOnceLater) {
    library.close();
    FullDisk::makePossible();
    library.open();
    for (const char* file : {"in/Work/Deep/1.md", "in/Work/Deep/2.md", "in/Work/3.md"})
        disk.write(file, "# A note");
    ImportOptions options;
    options.keepFolders = true;
    {
        const FullDisk full;
        EXPECT_EQ(import({disk.path() / "in"}, options).skipped.size(), 3U);
    }
    library->folders.createFolder("a later save", {});
    EXPECT_EQ(import({disk.path() / "in"}, options).imported, 3U);
    EXPECT_THAT(folderNames(), ElementsAre("Deep", "Work", "a later save"));
}

TEST_F(MarkdownImporterTest, AFolderMadeByHandMeanwhileIsUsed) {
    for (int i = 0; i < 1000; ++i)
        disk.write("in/A/" + std::to_string(i) + ".md", "# A note");
    disk.write("in/B/last.md", "# Last");
    ImportOptions options;
    options.keepFolders = true;
    MarkdownImporter importer(*library);
    std::optional<ImportReport> answer;
    std::optional<Uuid> byHand;
    importer.start(
        {disk.path() / "in"}, options,
        [&](std::size_t done, std::size_t) {
            if (done > 0 && !byHand) byHand = library->folders.createFolder("B", {}).id;
        },
        [&](const ImportReport& report) { answer = report; });
    ASSERT_TRUE(turnUntil([&] { return answer.has_value(); }));
    EXPECT_THAT(folderNames(), ElementsAre("A", "B"));
    ASSERT_TRUE(byHand);
    EXPECT_EQ(library->folders.fetchFolder(*byHand)->noteCount, 1);
}

// What a file of an export tells of its folders is whatever somebody wrote there.
TEST_F(MarkdownImporterTest, AFileCannotAskForFoldersWithoutEnd) {
    std::string deep;
    std::string told;
    for (int i = 0; i < 2000; ++i) {
        deep += "a/";
        told += ", \"f" + std::to_string(i) + "\"";
    }
    disk.write("in/corvel-library.json", R"({"format":"qno-corvel-library","folders":[]})");
    disk.write("in/n.md", "---\ncorvel: 1\nfolders: [\"../out\", \"" + deep + "\"" + told +
                              "]\n---\n# A note");
    ImportOptions options;
    options.keepFolders = true;
    EXPECT_EQ(import({disk.path() / "in"}, options).imported, 1U);
    const auto names = folderNames();
    EXPECT_EQ(names.size(), 1000U);
    EXPECT_THAT(names, Contains("f0"));
    EXPECT_THAT(names, Not(Contains("a")));
    EXPECT_EQ(notes().front().folderIDs.size(), 1000U);
}

// A file that was copied in the folder by hand says it is the same note.
TEST_F(MarkdownImporterTest, TwoFilesOfOneIdAreTwoNotes) {
    const std::string block = "---\ncorvel: 1\nid: \"0F8FAD5B-D9CB-469F-A165-70867728950E\"\n---\n";
    disk.write("in/1.md", block + "# One");
    disk.write("in/2.md", block + "# Two");
    EXPECT_EQ(import({disk.path() / "in"}).imported, 2U);
    EXPECT_THAT(titles(), ElementsAre("One", "Two"));
    const auto again = import({disk.path() / "in"});
    EXPECT_EQ(again.unchanged + again.imported, 2U);
    EXPECT_GE(again.unchanged, 1U);
}

TEST_F(MarkdownImporterTest, WhatIsSavedMeanwhileStaysWhenTheImportIsGivenUp) {
    for (int i = 0; i < 300; ++i)
        disk.write(std::to_string(i) + ".md", "# " + std::to_string(i));
    auto& store = library->controller.viewContext();
    auto importer = std::make_unique<MarkdownImporter>(*library);
    importer->start({disk.path()}, {}, {}, {});
    ASSERT_TRUE(turnUntil([&] { return store.hasChanges(); }));
    library->folders.createFolder("mine", {});
    const auto saved = notes().size();
    EXPECT_GT(saved, 0U);
    ASSERT_TRUE(turnUntil([&] { return store.hasChanges(); }));
    importer.reset();
    EXPECT_FALSE(store.hasChanges());
    library.reopen();
    EXPECT_EQ(notes().size(), saved);
    EXPECT_EQ(library->folders.fetchAllFolders().size(), 1U);
}

}  // namespace corvel
