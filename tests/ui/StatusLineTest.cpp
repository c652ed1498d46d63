#include "app/texts/StoreTexts.h"
#include "ui/StatusLine.h"
#include "ui/WindowTest.h"

#include <gtkmm/label.h>

#include <algorithm>
#include <string>

namespace corvel {
namespace {

class StatusLineTest : public WindowTest {
protected:
    StatusLineTest() {
        parent.set_child(line);
        session.editor.setTextSource([this] { return text; });
        session.editor.signalSaveStateChanged().connect([this] { line.refreshSaveState(); });
        session.commands.activate(CommandID::newNote);
    }

    void type(const std::string& words) {
        text += words;
        session.editor.contentEdited();
        line.refreshSaveState();
    }

    Gtk::Label* labelWith(const std::string& part) {
        for (auto* label : all<Gtk::Label>(line)) {
            if (label->get_visible() && label->get_text().raw().find(part) != std::string::npos)
                return label;
        }
        return nullptr;
    }

    std::string text;
    StatusLine line{session};
};

TEST_F(StatusLineTest, SavedIsSaidAfterTheCommitOnly) {
    type("four words are here");
    EXPECT_NE(labelWith("Zapisywanie"), nullptr);
    EXPECT_EQ(labelWith("Zapisano"), nullptr);
    ASSERT_TRUE(session.editor.save());
    line.refresh({});
    EXPECT_EQ(labelWith("Zapisywanie"), nullptr);
    EXPECT_NE(labelWith("Zapisano "), nullptr);
    EXPECT_NE(labelWith("4 słowa"), nullptr);
}

TEST_F(StatusLineTest, ARefusedSaveSaysWhyInWordsAndInTheChosenLanguage) {
    type("words");
    session.editor.save();
    {
        // The store on disk of this test was opened without a disk that can be full: a lock by
        // another connection refuses as well.
        Database other(folder.path() / "store" / "qnoCorvel.sqlite");
        other.execute("BEGIN IMMEDIATE");
        type(" more");
        testing::internal::CaptureStdout();
        EXPECT_FALSE(session.editor.save());
        testing::internal::GetCapturedStdout();
        auto* label = labelWith("Niezapisane: ");
        ASSERT_NE(label, nullptr);
        EXPECT_NE(label->get_text().raw().find(texts::storeLocked.polish), std::string::npos);
        EXPECT_TRUE(label->has_css_class("save-failed"));
        session.preferences.setAppLanguage("en");
        line.refresh({});
        EXPECT_NE(labelWith(std::string("Not saved: ") + texts::storeLocked.english), nullptr);
        other.execute("ROLLBACK");
    }
    EXPECT_TRUE(session.editor.save());
    auto* label = labelWith("Saved");
    ASSERT_NE(label, nullptr);
    EXPECT_FALSE(label->has_css_class("save-failed"));
}

TEST_F(StatusLineTest, ANoticeStandsOnlyWhileThereIsOne) {
    line.refresh("Too long to show");
    EXPECT_NE(labelWith("Too long to show"), nullptr);
    line.refresh({});
    EXPECT_EQ(labelWith("Too long"), nullptr);
}

}  // namespace
}  // namespace corvel
