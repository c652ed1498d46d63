#include "app/texts/LinkedFileTexts.h"
#include "ui/FilePaths.h"
#include "ui/LinkedFileBar.h"
#include "ui/NoteRow.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class LinkedFileBarTest : public WindowTest {
protected:
    LinkedFileBarTest() {
        session.preferences.setAppLanguage("en");
        session.start();
        id = session.list.createLocalFileNote(file).noteID.value();
        session.state.selectedNoteID.set(id);
    }

    std::vector<std::string> buttons() {
        std::vector<std::string> labels;
        for (auto* button : all<Gtk::Button>(bar))
            labels.push_back(button->get_tooltip_text());
        return labels;
    }
    bool press(const std::string& label) {
        for (auto* button : all<Gtk::Button>(bar)) {
            if (button->get_tooltip_text().raw() != label) continue;
            g_signal_emit_by_name(button->gobj(), "clicked");
            return true;
        }
        return false;
    }
    std::string message() { return all<Gtk::Label>(bar).front()->get_text(); }

    std::filesystem::path file = folder.write("plan.md", "base\n");
    Uuid id;
    int compared = 0;
    LinkedFileBar bar{session,
                      {.compare = [this] { ++compared; },
                       .locate = {},
                       .saveAgain = {},
                       .saveElsewhere = {},
                       .giveFocus = {}}};
};

TEST(ShownName, KeepsBeginningAndEndOfALongOne) {
    EXPECT_EQ(shownName("/a/plan.md"), "plan.md");
    const std::string name = "Żółw " + std::string(200, 'x') + " wersja 7.md";
    const auto shown = shownName("/a/" + name);
    EXPECT_LT(shown.size(), 50U);
    EXPECT_TRUE(shown.starts_with("Żółw xx") && shown.ends_with("… wersja 7.md")) << shown;
}

TEST_F(LinkedFileBarTest, SaysWhatIsTheMatterOnlyWhileItIs) {
    EXPECT_FALSE(bar.get_visible());
    std::filesystem::remove(file);
    session.linkedFile.check();
    ASSERT_TRUE(turnUntil([this] { return bar.get_visible(); }));
    EXPECT_THAT(message(), HasSubstr("plan.md"));
    EXPECT_THAT(buttons(), ElementsAre("Locate…", "Save Again", "Keep as Note"));
    folder.write("plan.md", "base\n");
    session.linkedFile.check();
    EXPECT_FALSE(bar.get_visible());

    auto note = session.library.notes.fetchNote(id).value();
    note.content = "mine\n";
    folder.write("plan.md", "theirs\n");
    session.library.notes.update(note);
    EXPECT_TRUE(bar.get_visible());
    EXPECT_THAT(buttons(), ElementsAre("Compare…"));
    session.preferences.setAppLanguage("pl");
    bar.refresh();
    EXPECT_THAT(buttons(), ElementsAre("Porównaj…"));
    session.state.selectedNoteID.set(std::nullopt);
    EXPECT_FALSE(bar.get_visible());
}

TEST_F(LinkedFileBarTest, AVanishedFilesNoteCanBecomeAnOrdinaryOne) {
    const auto row = session.list.summaryAt(0).value();
    EXPECT_THAT(accessibleNameOf(row, session.texts), HasSubstr(texts::localFile.english));
    std::filesystem::remove(file);
    session.linkedFile.check();
    ASSERT_TRUE(turnUntil([this] { return bar.get_visible(); }));
    ASSERT_TRUE(press("Keep as Note"));
    EXPECT_TRUE(turnUntil([this] { return !bar.get_visible(); }));
    EXPECT_FALSE(session.library.notes.fetchNote(id)->sourceFilePath);
}

}  // namespace
}  // namespace corvel
