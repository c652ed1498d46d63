#include "app/ExportSession.h"
#include "support/FileContent.h"
#include "support/MainLoop.h"
#include "support/Mount.h"
#include "support/TemporaryFolder.h"

#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// Answers in its own time, as the real ones do: the note's text, or an error where the text asks
/// for one.
class EchoExporter : public Exporter {
public:
    ExportFormat supportedFormat() const override { return ExportFormat::html; }
    void exportNote(const Note& note,
                    const ExportOptions&,
                    const Theme&,
                    const Glib::RefPtr<Gio::Cancellable>& cancellable,
                    Done done) override {
        Glib::signal_idle().connect_once([text = note.content, cancellable, done] {
            if (cancellable->is_cancelled()) return;
            if (text == "fail") return done(ExportError(ExportError::Kind::encodingFailed));
            done(text);
        });
    }
};

class ExportSessionTest : public testing::Test {
protected:
    Uuid add(const std::string& title, const std::string& content) {
        Note note;
        note.id = Uuid::random();
        note.title = title;
        note.content = content;
        notes[note.id] = note;
        return note.id;
    }

    ExportSession sessionOf(std::vector<Uuid> ids) {
        return ExportSession(
            themes, texts, [](ExportFormat) { return std::make_unique<EchoExporter>(); },
            [this](const Uuid& id) {
                const auto found = notes.find(id);
                return found == notes.end() ? std::nullopt : std::optional(found->second);
            },
            std::move(ids));
    }

    std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(target)) {
            found.push_back(entry.path().filename());
        }
        return found;
    }

    TemporaryFolder folder;
    fs::path target = [this] {
        fs::create_directory(folder.path() / "target");
        return folder.path() / "target";
    }();
    UserDefaults defaults{folder.path() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    ThemeManager themes{defaults, folder.path() / "Themes", [] { return false; }};
    std::map<Uuid, Note> notes;
};

TEST_F(ExportSessionTest, ExportsOneNoteAndWritesItWhereAsked) {
    auto session = sessionOf({add("Plan", "text")});
    bool isReady = false;
    session.signalReady().connect([&] { isReady = true; });
    session.start();
    EXPECT_TRUE(session.isExporting());
    ASSERT_TRUE(turnUntil([&] { return isReady; }));
    EXPECT_FALSE(session.isExporting());
    session.options.format = ExportFormat::epub;
    EXPECT_EQ(session.suggestedName(), "Plan.epub");
    EXPECT_TRUE(session.write(target / "a.html"));
    EXPECT_EQ(contentOf(target / "a.html"), "text");
}

TEST_F(ExportSessionTest, ShowsWhyItFailedAndCanTryAgain) {
    const Uuid id = add("", "fail");
    auto session = sessionOf({id});
    session.start();
    ASSERT_TRUE(turnUntil([&] { return !session.isExporting(); }));
    EXPECT_EQ(session.errorMessage(), "Failed to encode content");
    notes[id].content = "fine";
    session.start();
    EXPECT_THAT(session.errorMessage(), IsEmpty());
    ASSERT_TRUE(turnUntil([&] { return !session.isExporting(); }));
    EXPECT_THAT(session.errorMessage(), IsEmpty());
}

TEST_F(ExportSessionTest, AWriteThatFailsLeavesWhatWasThere) {
    std::ofstream(target / "note.html") << "before";
    auto session = sessionOf({add("", std::string(100'000, 'x'))});
    session.start();
    ASSERT_TRUE(turnUntil([&] { return !session.isExporting(); }));
    // A disk with no room for more than a few bytes.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &little);
    const bool isWritten = session.write(target / "note.html");
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(isWritten);
    EXPECT_THAT(session.errorMessage(), StartsWith("Failed to write file\nZapis"));
    EXPECT_EQ(contentOf(target / "note.html"), "before");
    EXPECT_THAT(names(), UnorderedElementsAre("note.html")) << "nothing half written beside it";
    EXPECT_FALSE(session.write(target / "no" / "such" / "folder.html"));
    EXPECT_THAT(session.errorMessage(), HasSubstr("miejsce zniknęło"));
}

TEST_F(ExportSessionTest, PutsSeveralNotesIntoAFolderBesideWhatIsThere) {
    std::ofstream(target / "Plan.html") << "mine";
    auto session = sessionOf({add("Plan", "1"), add("a/b", "2"), add("plan", "3"), add("", "4")});
    session.options.format = ExportFormat::html;
    bool isFinished = false;
    session.signalFinished().connect([&] { isFinished = true; });
    session.startInto(target);
    ASSERT_TRUE(turnUntil([&] { return isFinished; }));
    EXPECT_THAT(names(), UnorderedElementsAre("Plan.html", "Plan 2.html", "plan 3.html", "a-b.html",
                                              "Untitled.html"));
    EXPECT_EQ(contentOf(target / "Plan.html"), "mine");
    EXPECT_EQ(contentOf(target / "Plan 2.html"), "1");
}

TEST_F(ExportSessionTest, GoesOnAfterANoteThatFailsAndNamesIt) {
    auto session = sessionOf({add("bad", "fail"), Uuid::random(), add("good", "text")});
    session.startInto(target);
    ASSERT_TRUE(turnUntil([&] { return !session.isExporting(); }));
    EXPECT_THAT(session.errorMessage(), HasSubstr("Wyeksportowano 1 z 3."));
    EXPECT_THAT(session.errorMessage(), HasSubstr("bad: Failed to encode content"));
    EXPECT_EQ(names().size(), 1U);
}

// A server that is gone: whatever touches a file there would wait for it.
TEST_F(ExportSessionTest, ASilentVolumeHoldsNothingUp) {
    auto one = sessionOf({add("one", "1")});
    one.start();
    ASSERT_TRUE(turnUntil([&] { return !one.isExporting(); }));
    auto several = sessionOf({add("two", "2"), add("three", "3")});
    {
        const Mount silent = Mount::silent(target);
        if (!silent.isMounted()) GTEST_SKIP() << "needs root and FUSE";
        EXPECT_FALSE(one.write(target / "one.html"));
        EXPECT_THAT(one.errorMessage(), HasSubstr("nie odpowiada"));
        several.startInto(target);
        ASSERT_TRUE(turnUntil([&] { return !several.isExporting(); }));
        EXPECT_THAT(several.errorMessage(), HasSubstr("Wyeksportowano 0 z 2."));
        EXPECT_THAT(several.errorMessage(), HasSubstr("three: Dysk"));
    }
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(ExportSessionTest, CancelledItWritesNothingMore) {
    auto session = sessionOf({add("one", "1"), add("two", "2"), add("three", "3")});
    session.startInto(target);
    ASSERT_TRUE(turnUntil([&] { return session.doneCount() == 1; }));
    session.cancel();
    EXPECT_FALSE(session.isExporting());
    bool isLater = false;
    Glib::signal_idle().connect_once([&] { isLater = true; }, Glib::PRIORITY_LOW);
    ASSERT_TRUE(turnUntil([&] { return isLater; }));
    EXPECT_EQ(names().size(), 1U);
    EXPECT_THAT(session.errorMessage(), IsEmpty());
}

}  // namespace
}  // namespace corvel
