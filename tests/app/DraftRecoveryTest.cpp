#include "app/Session.h"
#include "library/DraftJournal.h"
#include "support/FileContent.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>

namespace corvel {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// One run of the program over a folder, with a text such as a window has.
class ProgramRun {
public:
    explicit ProgramRun(const std::filesystem::path& folder)
        : controller(PersistenceController::Storage::onDisk, folder)
        , defaults(folder / "preferences.ini")
        , themes(defaults, folder / "Themes", [] { return false; })
        , session(controller, defaults, themes, {}) {
        session.preferences.setAutoSaveInterval(3600);
        session.editor.setTextSource([this] { return text; });
        session.editor.signalOpened().connect([this] {
            text = session.editor.note() ? session.editor.note()->content : std::string();
        });
        session.signalRecovered().connect(
            [this](const std::vector<RecoveredNote>& notes) { recovered = notes; });
        session.start();
    }

    void type(const std::string& added) {
        session.editor.contentEdited({text.size(), 0, added});
        text += added;
    }
    std::string stored(const Uuid& id) { return session.library.notes.fetchNote(id)->content; }
    std::vector<std::filesystem::path> drafts() { return draftsIn(controller.draftFolder()); }

    PersistenceController controller;
    UserDefaults defaults;
    ThemeManager themes;
    Session session;
    std::string text;
    std::vector<RecoveredNote> recovered;
};

class DraftRecoveryTest : public testing::Test {
protected:
    /// A run that types into a new note and ends without saving, as by kill -9.
    Uuid crashAfterTyping(const std::string& saved, const std::string& typed) {
        ProgramRun run(folder.path());
        const Uuid id = run.session.list.createNote().value();
        run.type(saved);
        EXPECT_TRUE(run.session.editor.save());
        run.type(typed);
        EXPECT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
        return id;
    }
    void changeElsewhere(const Uuid& id, const std::string& content) {
        ProgramRun run(folder.path());
        Note note = run.session.library.notes.fetchNote(id).value();
        note.content = content;
        run.session.library.notes.update(note);
    }
    std::filesystem::path draftFolder() const { return folder.path() / "qnoCorvel_drafts"; }

    TemporaryFolder folder;
};

/// The program that will be killed: types a letter every few milliseconds and says so.
[[noreturn]] void typeUntilKilled(const std::filesystem::path& folder, int acknowledge) {
    ProgramRun run(folder);
    run.session.list.createNote();
    int count = 0;
    const auto timer = Glib::signal_timeout().connect(
        [&] {
            run.type(std::string(1, static_cast<char>('a' + count++ % 26)));
            const char byte = 1;
            if (write(acknowledge, &byte, 1) != 1) _exit(1);
            return true;
        },
        5);
    while (true) {
        Glib::MainContext::get_default()->iteration(true);
    }
}

TEST_F(DraftRecoveryTest, AProgramKilledWhileTypingLosesASecondAtMost) {
    using Clock = std::chrono::steady_clock;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        typeUntilKilled(folder.path(), ends[1]);
    }
    close(ends[1]);
    std::vector<Clock::time_point> typed;
    char byte = 0;
    while (read(ends[0], &byte, 1) == 1) {
        typed.push_back(Clock::now());
        if (typed.back() - typed.front() > std::chrono::milliseconds(2300)) break;
    }
    kill(child, SIGKILL);
    const auto killed = Clock::now();
    waitpid(child, nullptr, 0);
    close(ends[0]);
    const ProgramRun run(folder.path());
    ASSERT_THAT(run.recovered, SizeIs(1));
    const auto late = killed - std::chrono::seconds(1);
    const auto due = std::ranges::lower_bound(typed, late) - typed.begin();
    ASSERT_GT(due, 100);
    EXPECT_GE(run.text.size(), static_cast<std::size_t>(due));
    EXPECT_EQ(run.text.substr(0, 28), "abcdefghijklmnopqrstuvwxyzab");
}

TEST_F(DraftRecoveryTest, WordsOfAnUnchangedNoteGoBackIntoIt) {
    const Uuid id = crashAfterTyping("# Plan", " for today");
    ProgramRun run(folder.path());
    ASSERT_THAT(run.recovered, SizeIs(1));
    EXPECT_EQ(run.recovered[0].id, id);
    EXPECT_FALSE(run.recovered[0].isNewNote);
    EXPECT_EQ(run.recovered[0].title, "Plan for today");
    EXPECT_EQ(run.session.state.selectedNoteID.get(), id);
    EXPECT_EQ(run.text, "# Plan for today");
    EXPECT_EQ(run.stored(id), "# Plan for today");
    EXPECT_THAT(run.drafts(), IsEmpty());
}

TEST_F(DraftRecoveryTest, WordsOfAChangedOrDeletedNoteBecomeANoteOfTheirOwn) {
    const Uuid id = crashAfterTyping("# Plan", " of mine");
    const auto away = folder.path() / "away";
    std::filesystem::rename(draftFolder(), away);
    changeElsewhere(id, "# Plan of others");
    std::filesystem::rename(away, draftFolder());
    Uuid copy;
    {
        ProgramRun run(folder.path());
        ASSERT_THAT(run.recovered, SizeIs(1));
        EXPECT_TRUE(run.recovered[0].isNewNote);
        EXPECT_EQ(run.recovered[0].title, "Plan of mine (odzyskane)");
        copy = run.recovered[0].id;
        EXPECT_EQ(run.stored(id), "# Plan of others");
        EXPECT_EQ(run.stored(copy), "# Plan of mine");
        run.type(", again");
        ASSERT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
        std::filesystem::copy(run.drafts()[0], folder.path() / "late.draft");
        run.session.list.deletePermanently({copy});
        EXPECT_THAT(run.drafts(), IsEmpty()) << "deleted for good, with what was typed";
    }
    std::filesystem::rename(folder.path() / "late.draft", draftFolder() / "late.draft");
    ProgramRun run(folder.path());
    ASSERT_THAT(run.recovered, SizeIs(1));
    EXPECT_NE(run.recovered[0].id, copy);
    EXPECT_EQ(run.text, "# Plan of mine, again");
}

TEST_F(DraftRecoveryTest, ADraftOutlivesAStoreThatRefuses) {
    FullDisk::makePossible();
    Uuid id;
    testing::internal::CaptureStdout();
    {
        ProgramRun run(folder.path());
        id = run.session.list.createNote().value();
        run.type("saved");
        ASSERT_TRUE(run.session.editor.save());
        const FullDisk fullDisk;
        run.type(", refused");
        EXPECT_FALSE(run.session.editor.save());
        EXPECT_THAT(run.drafts(), SizeIs(1)) << "kept at once, not at the next tick";
        run.type(", typed on");
        EXPECT_FALSE(run.session.finish());
    }
    {
        const FullDisk stillFull;
        ProgramRun run(folder.path());
        EXPECT_THAT(run.recovered, IsEmpty());
        EXPECT_THAT(run.drafts(), SizeIs(1));
    }
    testing::internal::GetCapturedStdout();
    ProgramRun run(folder.path());
    EXPECT_EQ(run.stored(id), "saved, refused, typed on");
    EXPECT_THAT(run.drafts(), IsEmpty());
}

TEST_F(DraftRecoveryTest, ACopyThatTheStoreRefusedComesOnceWhenThereIsRoom) {
    FullDisk::makePossible();
    const Uuid id = crashAfterTyping("saved", ", typed");
    const auto late = folder.path() / "late.draft";
    std::filesystem::copy_file(draftsIn(draftFolder()).front(), late);
    {
        ProgramRun run(folder.path());
        run.session.library.notes.deletePermanently(id);
    }
    std::filesystem::rename(late, draftFolder() / "late.draft");
    testing::internal::CaptureStdout();
    {
        auto full = std::make_unique<FullDisk>();
        ProgramRun run(folder.path());
        EXPECT_THAT(run.recovered, IsEmpty());
        full.reset();
        run.session.list.createNote();  // what is unsaved is saved with it
    }
    testing::internal::GetCapturedStdout();
    const ProgramRun run(folder.path());
    EXPECT_THAT(run.recovered, SizeIs(1));
    EXPECT_THAT(run.session.library.notes.search("saved, typed"), SizeIs(1));
}

TEST_F(DraftRecoveryTest, NothingIsSaidOfWordsThatWereSavedAndDamageIsSetAside) {
    const Uuid id = crashAfterTyping("a", "b");
    const auto draft = draftsIn(draftFolder()).at(0);
    const std::string bytes = contentOf(draft);
    { const ProgramRun run(folder.path()); }
    std::ofstream(draft, std::ios::binary) << bytes;
    {
        ProgramRun run(folder.path());
        EXPECT_THAT(run.recovered, IsEmpty()) << "the store had these words already";
        EXPECT_EQ(run.stored(id), "ab");
        EXPECT_THAT(run.drafts(), IsEmpty());
    }
    std::ofstream(draft, std::ios::binary) << "rubbish";
    testing::internal::CaptureStdout();
    ProgramRun run(folder.path());
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("Error reading draft: "));
    EXPECT_THAT(run.recovered, IsEmpty());
    EXPECT_THAT(run.drafts(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(draft.string() + ".damaged"));
}

// A bad place on the disk must not keep the program from starting, nor other words from coming
// back.
TEST_F(DraftRecoveryTest, ADraftThatCannotBeReadHoldsUpNoOther) {
    const Uuid id = crashAfterTyping("a", "b");
    const auto broken = draftFolder() / "broken.draft";
    std::filesystem::create_symlink("/proc/self/mem", broken);
    testing::internal::CaptureStdout();
    ProgramRun run(folder.path());
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("Error reading draft: "));
    EXPECT_EQ(run.stored(id), "ab");
    EXPECT_TRUE(std::filesystem::is_symlink(broken.string() + ".damaged"));
}

TEST_F(DraftRecoveryTest, OfADraftWithADamagedEndTheBeginningIsTakenAndTheFileKept) {
    const Uuid id = crashAfterTyping("a", "b");
    const auto draft = draftsIn(draftFolder()).at(0);
    std::ofstream(draft, std::ios::binary | std::ios::app) << "torn";
    testing::internal::CaptureStdout();
    ProgramRun run(folder.path());
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr("the end is damaged"));
    EXPECT_EQ(run.stored(id), "ab");
    EXPECT_THAT(run.drafts(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(draft.string() + ".damaged"));
}

TEST_F(DraftRecoveryTest, ATitleAloneComesBackToo) {
    Uuid id;
    {
        ProgramRun run(folder.path());
        id = run.session.list.createNote().value();
        run.type("# Plan");
        ASSERT_TRUE(run.session.editor.save());
        run.session.editor.titleEdited("Own");
        ASSERT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
    }
    {
        ProgramRun run(folder.path());
        ASSERT_THAT(run.recovered, SizeIs(1));
        EXPECT_EQ(run.recovered[0].title, "Own");
        EXPECT_EQ(run.session.library.notes.fetchNote(id)->title, "Own");
        run.type(" for today");  // the text no longer leads the title
        ASSERT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
    }
    ProgramRun run(folder.path());
    EXPECT_EQ(run.session.library.notes.fetchNote(id)->title, "Own");
    EXPECT_EQ(run.stored(id), "# Plan for today");
}

TEST_F(DraftRecoveryTest, ATitleOfWordsThatTheNoteGotAnotherWayComesBackWithoutASecondNote) {
    const Uuid id = crashAfterTyping("0", "");
    std::filesystem::remove_all(draftFolder());
    changeElsewhere(id, "01");
    DraftJournal journal(draftFolder());
    journal.add({1, 0, "1"});
    journal.addTitle("Own");
    journal.flush(id, "0", {});
    ProgramRun run(folder.path());
    EXPECT_EQ(run.session.library.notes.fetchNote(id)->title, "Own");
    EXPECT_EQ(run.stored(id), "01");
    EXPECT_EQ(run.session.list.size(), 1U);
}

// A store that refused for several runs leaves several drafts of one note.
TEST_F(DraftRecoveryTest, DraftsOfOneNoteAreTakenInTheOrderTheyWereWritten) {
    const Uuid id = crashAfterTyping("0", "");
    std::filesystem::remove_all(draftFolder());
    std::string text = "0";
    for (int i = 1; i <= 9; ++i) {
        DraftJournal journal(draftFolder());
        journal.add({text.size(), 0, std::to_string(i)});
        journal.flush(id, text, {});
        text += std::to_string(i);
        const auto age = std::chrono::minutes(10 - i);
        for (const auto& draft : draftsIn(draftFolder())) {
            if (readDraft(draft)->text == text)
                std::filesystem::last_write_time(
                    draft, std::filesystem::file_time_type::clock::now() - age);
        }
    }
    ProgramRun run(folder.path());
    EXPECT_EQ(run.stored(id), text);
    EXPECT_EQ(run.session.list.size(), 1U);
}

TEST_F(DraftRecoveryTest, AStoredTextThatIsNoTextIsKnownAgain) {
    const Uuid id = crashAfterTyping("a", "");
    changeElsewhere(id, "a\xFFz");
    DraftJournal journal(draftFolder());
    journal.add({3, 0, "!"});
    journal.flush(id, "a\xFFz", {});
    ProgramRun run(folder.path());
    EXPECT_EQ(run.stored(id), "a\xEF\xBF\xBDz!");
    EXPECT_EQ(run.session.list.size(), 1U);
}

TEST_F(DraftRecoveryTest, WordsOfAChangedNoteComeBackWhereItLiesAndOnlyIfThereAreAny) {
    Uuid id;
    {
        ProgramRun run(folder.path());
        auto& library = run.session.library;
        const auto shelf = library.folders.createFolder("Shelf", {}).id;
        id = run.session.list.createNote().value();
        library.folders.addNoteToFolder(id, shelf);
        run.type("# Plan");
        ASSERT_TRUE(run.session.editor.save());
        run.session.editor.titleEdited("Own");
        ASSERT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
        std::filesystem::copy(run.drafts().at(0), folder.path() / "title.draft");
        run.type(" mine");
        run.session.editor.titleEdited("");
        ASSERT_TRUE(turnUntil([&] { return readDraft(run.drafts().at(0))->text != "# Plan"; }));
        std::filesystem::copy(run.drafts().at(0), folder.path() / "text.draft");
    }
    std::filesystem::remove_all(draftFolder());
    changeElsewhere(id, "# Plan of others");
    std::filesystem::create_directory(draftFolder());
    std::filesystem::rename(folder.path() / "title.draft", draftFolder() / "title.draft");
    std::filesystem::rename(folder.path() / "text.draft", draftFolder() / "text.draft");
    ProgramRun run(folder.path());
    ASSERT_THAT(run.recovered, SizeIs(1)) << "a title without words is no note";
    const auto copy = run.session.library.notes.fetchNote(run.recovered[0].id).value();
    EXPECT_EQ(copy.content, "# Plan mine");
    EXPECT_EQ(copy.title, "Plan mine (odzyskane)");
    EXPECT_EQ(copy.folderIDs, run.session.library.notes.fetchNote(id)->folderIDs);
    EXPECT_FALSE(copy.folderIDs.empty());
}

TEST_F(DraftRecoveryTest, AChangeElsewhereWhileTypingLosesNeitherText) {
    Uuid id;
    std::string other;
    {
        ProgramRun run(folder.path());
        run.session.signalOtherVersionKept().connect(
            [&](const Note& copy) { other = copy.title + ": " + copy.content; });
        id = run.session.list.createNote().value();
        run.type("# Plan");
        ASSERT_TRUE(run.session.editor.save());
        run.type(" mine");
        ASSERT_TRUE(turnUntil([&] { return !run.drafts().empty(); }));
        Note note = run.session.library.notes.fetchNote(id).value();
        note.content = "# Plan theirs";
        run.session.library.notes.update(note);
        EXPECT_EQ(other, "Plan (druga wersja): # Plan theirs");
        EXPECT_EQ(run.text, "# Plan mine");
    }
    ProgramRun run(folder.path());
    EXPECT_EQ(run.stored(id), "# Plan mine") << "a crash right after changes nothing";
    EXPECT_EQ(run.session.list.size(), 2U);
    Note note = run.session.library.notes.fetchNote(id).value();
    note.content = "# Plan, read anew";
    run.session.library.notes.update(note);
    EXPECT_EQ(run.text, "# Plan, read anew") << "nothing was being edited";
}

}  // namespace
}  // namespace corvel
