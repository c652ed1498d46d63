#include "export/LibraryExporter.h"
#include "export/PortableNames.h"
#include "library/LibraryManifest.h"
#include "library/MarkdownImporter.h"
#include "platform/Text.h"
#include "support/FileContent.h"
#include "support/MainLoop.h"
#include "support/Mount.h"
#include "support/TestLibrary.h"

#include <glibmm/miscutils.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <map>

namespace corvel {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

constexpr std::size_t kLarge = 300 * 1024;

/// What a library is to the user, in words to compare; without ids where `withIDs` is not set.
class Picture {
public:
    Picture(Library& library, bool withIDs) : m_library(library), m_withIDs(withIDs) {
        addFolders(library.folders.fetchRootFolders(), "");
        auto query = library.controller.viewContext().database().query("SELECT id FROM note");
        std::vector<Uuid> ids;
        while (query.next())
            ids.push_back(query.uuid(0));
        for (const auto& id : ids)
            addNote(library.notes.fetchNote(id).value());
    }

    std::vector<std::string> folders;
    std::map<std::string, std::string> notes;

private:
    void addFolders(const std::vector<Folder>& list, const std::string& above) {
        for (const auto& folder : list) {
            const auto name = above + "|" + folder.name;
            m_names[folder.id] = name;
            folders.push_back(name + (m_withIDs ? folder.id.toString() : ""));
            addFolders(folder.children, name);
        }
    }

    void addNote(const Note& note) {
        std::vector<std::string> parts;
        for (const auto& id : note.folderIDs)
            parts.push_back(m_names.at(id));
        std::sort(parts.begin(), parts.end());
        for (const auto& path : pathsOf(note))
            parts.push_back("#" + path);
        for (const auto& file : m_library.attachments.fetchAttachments(note.id)) {
            parts.push_back(
                file.filename + " " + file.mimeType + " " +
                std::to_string(std::hash<std::string_view>{}(
                    {reinterpret_cast<const char*>(file.data.data()), file.data.size()})));
            if (m_withIDs) parts.push_back(file.id.toString());
        }
        parts.push_back(std::to_string(note.isPinned) + std::to_string(note.isArchived) +
                        std::to_string(note.isTrashed));
        parts.push_back(std::to_string(note.trashedAt.value_or(Date{-1}).microseconds));
        parts.push_back(std::to_string(note.createdAt.microseconds) + "/" +
                        std::to_string(note.modifiedAt.microseconds));
        parts.push_back(std::to_string(note.wordCount));
        std::string all = note.content;
        for (const auto& part : parts)
            all += "\n· " + part;
        notes[note.title + (m_withIDs ? note.id.toString() : "")] = all;
    }

    Library& m_library;
    bool m_withIDs;
    std::map<Uuid, std::string> m_names;
};

std::vector<std::string> entriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

class LibraryExporterTest : public testing::Test {
protected:
    Note add(const std::string& title, const std::string& content, std::vector<Uuid> folders = {}) {
        Note note = noteFrom(content, 1'000 + 7 * ++m_count);
        note.title = title;
        note.createdAt = {note.createdAt.microseconds - 123'457};
        note.folderIDs = std::move(folders);
        library->notes.create(note);
        return library.stored(note.id);
    }

    Uuid attach(const Note& note, const std::string& name, const std::string& bytes) {
        const Attachment attachment{
            Uuid::random(), name, "image/png", {bytes.begin(), bytes.end()}, {}};
        library->attachments.create(attachment, note.id);
        return attachment.id;
    }

    LibraryExportReport exportTo(const fs::path& target) {
        LibraryExporter exporter(*library);
        std::optional<LibraryExportReport> result;
        exporter.start(target, "Kosz", {},
                       [&](const LibraryExportReport& report) { result = report; });
        EXPECT_FALSE(result);
        EXPECT_TRUE(turnUntil([&] { return result.has_value(); }));
        EXPECT_FALSE(exporter.isRunning());
        return result.value_or(LibraryExportReport{});
    }

    /// Cancels as soon as progress is told.
    void expectNothingOfACancelledExport() {
        LibraryExporter exporter(*library);
        std::optional<LibraryExportReport> result;
        exporter.start(
            disk.path() / "out", "Kosz", [&](std::size_t, std::size_t) { exporter.cancel(); },
            [&](const LibraryExportReport& report) { result = report; });
        ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
        EXPECT_TRUE(result->wasCancelled);
        EXPECT_THAT(entriesOf(disk.path()), IsEmpty());
    }

    static ImportReport import(TestLibrary& into, const fs::path& folder) {
        MarkdownImporter importer(*into);
        std::optional<ImportReport> result;
        ImportOptions options;
        options.keepFolders = true;
        importer.start({folder}, options, {}, [&](const ImportReport& report) { result = report; });
        EXPECT_TRUE(turnUntil([&] { return result.has_value(); }));
        return result.value_or(ImportReport{});
    }

    // Folders that share names, notes in several, states, files small and large, shown elsewhere.
    void fill() {
        auto& folders = library->folders;
        const auto work = folders.createFolder("Work", {}).id;
        const auto same = folders.createFolder("work", {}).id;
        const auto twin = folders.createFolder("Work", {}).id;
        const auto inner = folders.createFolder("a/b: c", work).id;
        const auto deep = folders.createFolder(std::string(400, 'x'), inner).id;
        folders.createFolder("Empty", inner);
        folders.createFolder("Kosz", {});
        folders.createFolder("_attachments", {});
        add("Plan", "# Plan\n\ntext #project/alpha", {work});
        add("plan", "other", {work});
        add("Both", "in three", {work, same, deep});
        add("Twin", "x", {twin});
        add("CON", "device");
        add("", "");
        add(std::string(300, 'y') + "ż", "long name");
        add("../../etc", "---\ntitle: Mine\n---\nkept");
        const auto pinned = add("Pinned", "---\ncorvel: 1\n---\nmine too", {inner});
        library->notes.togglePin(pinned.id);
        library->notes.toggleArchive(add("Archived", "a", {inner}).id);
        library->notes.moveToTrash(add("Thrown", "away", {work, inner}).id);
        library->notes.moveToTrash(add("Thrown from one", "away", {inner}).id);
        Note tagged = noteFrom("no tag in the text");
        tagged.tags = {{Uuid::random(), "beta", "project/beta", {}}};
        library->notes.create(tagged);

        Note shows = add("Shows", "", {same});
        const auto small = attach(shows, "a b.png", "small");
        const auto large = attach(shows, "A B.PNG", std::string(kLarge, 'L'));
        attach(shows, "unused.bin", "unused");
        shows.content = "![](attachment://" + small.toString() + ") and `attachment://" +
                        large.toString() + "` end";
        library->notes.update(shows);
        add("Borrows", "[x](attachment://" + large.toString() + ")");
        Note tricky = add("Tricky", "");
        const auto third = attach(tricky, "t.png", "third");
        tricky.content = "![](_attachments/t.png) ![](attachment://" + third.toString() + ")";
        library->notes.update(tricky);
    }

    TestLibrary library;
    TemporaryFolder disk;

private:
    int m_count = 0;
};

}  // namespace

TEST(PortableNames, AreWhatEverySystemTakes) {
    PortableNames names;
    names.reserve("Taken");
    EXPECT_EQ(names.next("taken", ""), "taken 2");
    EXPECT_EQ(names.next("a/b\\c:d*e?f\"g<h>i|j\n", ".md"), "a-b-c-d-e-f-g-h-i-j-.md");
    EXPECT_EQ(names.next(" .. ", ".md"), "Untitled.md");
    EXPECT_EQ(names.next("untitled", ".md"), "untitled 2.md");
    EXPECT_EQ(names.next("nul", ".md"), "_nul.md");
    EXPECT_EQ(names.next("COM1.tar", ".gz"), "_COM1.tar.gz");
    EXPECT_EQ(names.next("Żółw. ", ".md"), "Żółw.md");
    EXPECT_EQ(names.next("Z\u0307o\u0301łw", ".md"), "Z\u0307o\u0301łw 2.md");
    EXPECT_EQ(names.next("żÓŁW", ".md"), "żÓŁW 3.md");
    for (int i = 0; i < 3; ++i) {
        const auto name = names.next(std::string(200, 'a') + "ż", ".md");
        EXPECT_LT(name.size(), 200U);
        EXPECT_TRUE(name.ends_with(".md"));
    }
    EXPECT_EQ(names.next("Plan 2", ".md"), "Plan 2.md");
    EXPECT_EQ(names.next("Plan", ".md"), "Plan.md");
    EXPECT_EQ(names.next("plan", ".md"), "plan 3.md") << "what is given is nobody else's";
}

TEST_F(LibraryExporterTest, GivesBackTheSameLibrary) {
    fill();
    const auto report = exportTo(disk.path() / "out");
    EXPECT_FALSE(report.fault) << report.detail;
    EXPECT_EQ(report.notes, 16U);
    EXPECT_THAT(report.missingAttachments, IsEmpty());
    EXPECT_THAT(entriesOf(disk.path()), ElementsAre("out"));

    TestLibrary other;
    const auto imported = import(other, disk.path() / "out");
    EXPECT_EQ(imported.imported, 16U);
    EXPECT_THAT(imported.skipped, IsEmpty());
    const Picture before(*library, true);
    const Picture after(*other, true);
    EXPECT_EQ(after.folders, before.folders);
    EXPECT_EQ(after.notes, before.notes);

    // All of it is there already.
    const auto again = import(other, disk.path() / "out");
    EXPECT_EQ(again.imported, 0U);
    EXPECT_EQ(again.unchanged, 16U);
    EXPECT_EQ(Picture(*other, true).folders, before.folders);
}

// No path may grow beyond what a system takes.
TEST_F(LibraryExporterTest, GivesBackFoldersHoweverDeepTheyLie) {
    std::optional<Uuid> deepest;
    for (int i = 0; i < 40; ++i)
        deepest =
            library->folders.createFolder(std::string(170, 'n') + std::to_string(i), deepest).id;
    add("Deep", "down", {*deepest});
    const auto report = exportTo(disk.path() / "out");
    EXPECT_FALSE(report.fault) << report.detail;
    TestLibrary other;
    EXPECT_EQ(import(other, disk.path() / "out").imported, 1U);
    EXPECT_EQ(Picture(*other, true).folders, Picture(*library, true).folders);
    EXPECT_EQ(Picture(*other, true).notes, Picture(*library, true).notes);
}

TEST_F(LibraryExporterTest, ComesBackBesideNotesThatWereChangedSince) {
    Note note = add("Note", "");
    const auto image = attach(note, "i.png", "bytes");
    note.content = "![](attachment://" + image.toString() + ")";
    library->notes.update(note);
    exportTo(disk.path() / "out");
    Note changed = library.stored(note.id);
    changed.content += " more";
    library->notes.update(changed);
    EXPECT_EQ(import(library, disk.path() / "out").imported, 1U);
    EXPECT_EQ(library.stored(note.id).content, changed.content);
    // Each has an image of its own: deleting one note leaves the other whole.
    library->notes.deletePermanently(note.id);
    const auto left = library->notes.fetchNotes(SidebarFilter{}, SortOption::title);
    ASSERT_EQ(left.size(), 1U);
    const auto files = library->attachments.fetchAttachments(left[0].id);
    ASSERT_EQ(files.size(), 1U);
    EXPECT_EQ(left[0].content, "![](attachment://" + files[0].id.toString() + ")");
}

TEST_F(LibraryExporterTest, BringsASharedImageAlsoWithoutItsOwner) {
    Note owner = add("Owner", "");
    const auto image = attach(owner, "i.png", "bytes");
    const auto text = "![](attachment://" + image.toString() + ")";
    add("Borrower", text);
    exportTo(disk.path() / "out");
    fs::remove(disk.path() / "out/Owner.md");
    TestLibrary other;
    import(other, disk.path() / "out");
    const auto notes = other->notes.fetchNotes(SidebarFilter{}, SortOption::title);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes[0].content, text);
    EXPECT_TRUE(other->attachments.fetchAttachment(image));
}

TEST_F(LibraryExporterTest, ReadsNoFileOutsideTheExport) {
    disk.write("secret.png", "secret");
    disk.write("out/sub/n.md",
               "---\ncorvel: 1\nattachments:\n  - {file: \"../../secret.png\", id: "
               "0F8FAD5B-D9CB-469F-A165-70867728950E}\n  - {file: \"l.png\", id: "
               "0F8FAD5B-D9CB-469F-A165-70867728950F}\n---\ntext");
    fs::create_symlink(disk.path() / "secret.png", disk.path() / "out/sub/l.png");
    const auto report = import(library, disk.path() / "out");
    EXPECT_EQ(report.imported, 1U);
    EXPECT_EQ(report.missingImages.size(), 2U);
    auto query =
        library.controller().viewContext().database().query("SELECT count(*) FROM attachment");
    ASSERT_TRUE(query.next());
    EXPECT_EQ(query.integer(0), 0);
}

TEST_F(LibraryExporterTest, TakesFromAHostileLibraryOnlyWhatAnExportCanHold) {
    const auto deep = [](std::size_t levels) {
        std::string path = "a";
        for (std::size_t i = 0; i < levels; ++i)
            path += "/a";
        return path;
    };
    disk.write("out/n.md",
               "---\ncorvel: 1\ntitle: \"x\\0\"\ncreated: 9999-99-99\nfolders: [\"" +
                   deep(500'000) +
                   "\", \"..\", \"../../x\", \".\", \"/\", \"In/\", \"In/./y/..\"]\ntags: [\"" +
                   deep(500'000) + "\", \"\", \"good/tag\"]\n---\ntext");
    std::string nested(500'000, '[');
    disk.write("out/corvel-library.json", "{\"format\": \"qno-corvel-library\", \"x\": " + nested +
                                              std::string(nested.size(), ']') +
                                              ", \"folders\": [{\"path\": \"../up\", \"name\": \"" +
                                              std::string(1'000'000, 'n') +
                                              "\", \"parent\": [[]]}, [], 1, {}]}");
    EXPECT_EQ(import(library, disk.path() / "out").imported, 1U);
    const auto notes = library->notes.fetchNotes(SidebarFilter{}, SortOption::title);
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_TRUE(text::isValidUtf8(notes[0].title));
    std::vector<std::string> tags;
    for (const auto& tag : notes[0].tags)
        tags.push_back(tag.fullPath);
    EXPECT_THAT(tags, UnorderedElementsAre("good", "good/tag"));
    const auto folders = library->folders.fetchRootFolders();
    ASSERT_EQ(folders.size(), 2U);
    EXPECT_LE(folders[0].name.size(), 10'000U);
    EXPECT_EQ(folders[1].name, "In");
    EXPECT_TRUE(folders[1].children.empty());
    EXPECT_EQ(notes[0].folderIDs, std::vector{folders[1].id});
}

TEST_F(LibraryExporterTest, WritesNothingWhereSomethingIs) {
    add("Note", "x");
    disk.write("out/mine.txt", "mine");
    EXPECT_EQ(exportTo(disk.path() / "out").fault, LibraryExportFault::occupied);
    EXPECT_THAT(entriesOf(disk.path()), ElementsAre("out"));
    EXPECT_THAT(entriesOf(disk.path() / "out"), ElementsAre("mine.txt"));
    fs::create_directory(disk.path() / "empty");
    EXPECT_FALSE(exportTo(disk.path() / "empty").fault);
    EXPECT_THAT(entriesOf(disk.path() / "empty"), ElementsAre("Note.md", "corvel-library.json"));
    EXPECT_EQ(exportTo(disk.path() / "no/such").fault, LibraryExportFault::gone);
}

TEST_F(LibraryExporterTest, CanBeCancelledUntilTheLastNoteIsWritten) {
    add("Only note", "All of it is written when the progress is told.");
    expectNothingOfACancelledExport();
}

TEST_F(LibraryExporterTest, LeavesNothingBehindWhenItEndsEarly) {
    for (int i = 0; i < 300; ++i)
        add("Note " + std::to_string(i), std::string(2000, 'x'));
    expectNothingOfACancelledExport();
    {
        LibraryExporter exporter(*library);
        exporter.start(disk.path() / "out", "Kosz", {}, {});
        Glib::MainContext::get_default()->iteration(false);
    }
    EXPECT_THAT(entriesOf(disk.path()), IsEmpty());
}

TEST_F(LibraryExporterTest, SaysWhenThePlaceVanishes) {
    // After the last note, and most likely after one of the first.
    int added = 0;
    for (const int count : {1, 500}) {
        for (; added < count; ++added)
            add("Note " + std::to_string(added), std::string(2000, 'x'));
        fs::create_directory(disk.path() / "drive");
        LibraryExporter exporter(*library);
        std::optional<LibraryExportReport> result;
        exporter.start(
            disk.path() / "drive/out", "Kosz",
            [&](std::size_t, std::size_t) { fs::remove_all(disk.path() / "drive"); },
            [&](const LibraryExportReport& report) { result = report; });
        EXPECT_TRUE(turnUntil([&] { return result.has_value(); }));
        EXPECT_EQ(result->fault, LibraryExportFault::gone) << result->detail;
    }
}

TEST_F(LibraryExporterTest, LeavesNothingOnADiskThatIsFullOrReadOnly) {
    for (int i = 0; i < 300; ++i)
        add("Note " + std::to_string(i), std::string(2000, 'x'));
    const auto drive = disk.path() / "drive";
    fs::create_directory(drive);
    const Mount mount = Mount::ofSize(drive, "256k");
    if (!mount.isMounted()) GTEST_SKIP() << "needs root";
    EXPECT_EQ(exportTo(drive / "out").fault, LibraryExportFault::diskFull);
    EXPECT_THAT(entriesOf(drive), IsEmpty());
    ASSERT_TRUE(mount.change(MS_RDONLY, ""));
    EXPECT_EQ(exportTo(drive / "out").fault, LibraryExportFault::notWritable);
}

// A server that is gone, at once or in the middle: whatever touches a file there would wait for it.
TEST_F(LibraryExporterTest, ASilentVolumeHoldsNothingUp) {
    for (int i = 0; i < 300; ++i)
        add("Note " + std::to_string(i), std::string(2000, 'x'));
    const auto drive = disk.path() / "drive";
    fs::create_directory(drive);
    {
        const Mount silent = Mount::silent(drive);
        if (!silent.isMounted()) GTEST_SKIP() << "needs root and FUSE";
        EXPECT_EQ(exportTo(drive / "out").fault, LibraryExportFault::noAnswer);
    }
    EXPECT_THAT(entriesOf(drive), IsEmpty());
    LibraryExporter exporter(*library);
    std::unique_ptr<Mount> silent;
    std::optional<LibraryExportReport> result;
    exporter.start(
        drive / "out", "Kosz",
        [&](std::size_t, std::size_t) {
            if (!silent) silent.reset(new Mount(Mount::silent(drive)));
        },
        [&](const LibraryExportReport& report) { result = report; });
    ASSERT_TRUE(turnUntil([&] { return result.has_value(); }));
    EXPECT_EQ(result->fault, LibraryExportFault::noAnswer) << result->detail;
    silent.reset();
    EXPECT_THAT(entriesOf(drive), ElementsAre("out.partial")) << "nothing was removed there";
}

// A disk that takes the bytes and then cannot keep them.
TEST_F(LibraryExporterTest, IsNotDoneBeforeTheDiskHasIt) {
    add("Note", "text");
    const auto sync = disk.write("bin/sync", "#!/bin/sh\nexit 1\n");
    fs::permissions(sync, fs::perms(0755));
    const std::string before = Glib::getenv("PATH");
    Glib::setenv("PATH", sync.parent_path().string() + ":" + before);
    EXPECT_EQ(exportTo(disk.path() / "out").fault, LibraryExportFault::failed);
    Glib::setenv("PATH", before);
    EXPECT_THAT(entriesOf(disk.path()), ElementsAre("bin"));
}

TEST_F(LibraryExporterTest, NamesAttachmentsThatAreLost) {
    Note note = add("Note", "");
    const auto id = attach(note, "large.bin", std::string(kLarge, 'L'));
    note.content = "![](attachment://" + id.toString() + ")";
    library->notes.update(note);
    fs::remove(library.controller().attachmentFiles().pathOf(id));
    EXPECT_THAT(exportTo(disk.path() / "out").missingAttachments, ElementsAre("large.bin"));
    EXPECT_NE(contentOf(disk.path() / "out/Note.md").find(note.content), std::string::npos);

    // There, but on a bad place of the disk: the other files come all the same.
    attach(note, "fine.bin", std::string(kLarge, 'F'));
    const auto bad = attach(note, "bad.bin", std::string(kLarge, 'B'));
    fs::remove(library.controller().attachmentFiles().pathOf(bad));
    fs::create_symlink("/proc/self/mem", library.controller().attachmentFiles().pathOf(bad));
    EXPECT_THAT(exportTo(disk.path() / "again").missingAttachments,
                UnorderedElementsAre("large.bin", "bad.bin"));
    EXPECT_THAT(entriesOf(disk.path() / "again/_attachments"), ElementsAre("fine.bin"));
    EXPECT_EQ(fs::file_size(disk.path() / "again/_attachments/fine.bin"), kLarge);
}

TEST_F(LibraryExporterTest, ADiskThatIsFullBeforeAnAttachmentIsCopiedKeepsNothing) {
    const Note note = add("Note", "text");
    attach(note, "large.bin", std::string(2 * kLarge, 'L'));
    const auto drive = disk.path() / "drive";
    fs::create_directory(drive);
    const Mount mount = Mount::ofSize(drive, "400k");
    if (!mount.isMounted()) GTEST_SKIP() << "needs root";
    EXPECT_EQ(exportTo(drive / "out").fault, LibraryExportFault::diskFull);
    EXPECT_THAT(entriesOf(drive), IsEmpty());
}

}  // namespace corvel
