#include "library/Notifications.h"
#include "model/PersistenceController.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "ui/PageWindows.h"
#include "ui/Resources.h"

#include <adwaita.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>
#include <gtkmm/window.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace corvel {
namespace {

class PageWindowsTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
        adw_init();
        registerResources();
    }

    void openNote(const std::string& content) {
        Note note;
        note.id = Uuid::random();
        note.content = content;
        note.title = content.substr(2, content.find('\n') - 2);
        session.library.notes.create(note);
        session.editor.open(note.id);
    }

    /// Titles of the windows on screen, without the main one's.
    static std::vector<std::string> titles() {
        std::vector<std::string> found;
        for (const auto* window : Gtk::Window::list_toplevels()) {
            if (window->is_visible() && !window->get_title().empty()) {
                found.push_back(window->get_title());
            }
        }
        return found;
    }
    using Titles = std::vector<std::string>;

    TemporaryFolder folder;
    PersistenceController controller{PersistenceController::Storage::onDisk,
                                     folder.path() / "store"};
    UserDefaults defaults{folder.path() / "preferences"};
    ThemeManager themes{defaults, folder.path() / "Themes", [] { return false; }};
    Session session{controller, defaults, themes, {}};
    Gtk::Window parent;
    std::vector<std::filesystem::path> imported;
    PageWindows windows{session, parent, [this](const auto& path) { imported.push_back(path); }};
};

TEST_F(PageWindowsTest, ReadsTheOpenNoteAndGoesWithIt) {
    session.notifications.post(notifications::openReaderMode);
    EXPECT_EQ(titles(), Titles{}) << "there is nothing to read";
    openNote("# One\ntext");
    session.notifications.post(notifications::openReaderMode);
    EXPECT_EQ(titles(), Titles{"One"});
    openNote("# Two\ntext");
    EXPECT_EQ(titles(), Titles{"Two"});
    session.editor.open(std::nullopt);
    EXPECT_EQ(titles(), Titles{});
}

TEST_F(PageWindowsTest, FollowsAFileAndSaysWhatIsWrongWithIt) {
    const auto path = folder.write("a.md", "# File");
    session.notifications.post(notifications::openMarkdownPreview, path);
    session.notifications.post(notifications::openMarkdownPreview, path);
    EXPECT_EQ(titles(), Titles{"a.md"}) << "one window a file";
    FilePreviewWindow window(session, path);
    using State = FilePreviewWindow::State;
    EXPECT_EQ(window.state(), State::shown);
    std::filesystem::remove(path);
    EXPECT_TRUE(turnUntil([&] { return window.state() == State::missing; }));
    folder.write("a.md", std::string("\0\1\2", 3));
    EXPECT_TRUE(turnUntil([&] { return window.state() == State::notText; }));
    folder.write("a.md", std::string(5'000'000, 'x'));
    EXPECT_TRUE(turnUntil([&] { return window.state() == State::tooLarge; }));
    folder.write("a.md", "# Back");
    EXPECT_TRUE(turnUntil([&] { return window.state() == State::shown; }));
    EXPECT_EQ(FilePreviewWindow(session, folder.path()).state(), State::unreadable);
}

TEST_F(PageWindowsTest, OpensTheGuideInTheLanguageOfTheInterface) {
    windows.openGuide();
    EXPECT_EQ(titles(), Titles{"Przewodnik Markdown"});
    session.preferences.setAppLanguage("en");
    EXPECT_EQ(titles(), Titles{"Markdown Guide"});
    windows.closeAll();
    EXPECT_EQ(titles(), Titles{});
}

}  // namespace
}  // namespace corvel
