#include "app/Session.h"
#include "library/Notifications.h"
#include "support/FullDisk.h"
#include "support/MainLoop.h"
#include "support/TestSession.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace corvel {
namespace {

using testing::ElementsAre;

class SessionTest : public testing::Test, protected TestSession {
protected:
    SessionTest() : TestSession(0.1) {}

    /// A saved note with an edit that is not saved yet.
    Uuid editOnADiskThatCanFill() {
        FullDisk::makePossible();
        close();
        open();
        activate(CommandID::newNote);
        type("words");
        session->editor.save();
        const Uuid written = selected();
        type(" that matter");
        return written;
    }
};

TEST_F(SessionTest, ANewNoteIsOpenedAndTakesItsTitleFromItsText) {
    session->preferences.setAutoSaveInterval(60);
    activate(CommandID::newNote);
    type("# Plan");
    ASSERT_TRUE(turnUntil([&] { return session->list.summaryAt(0)->title == "Plan"; }));
    EXPECT_EQ(storedText(selected()), "") << "the list shows the title before the save";
    session->editor.save();
    EXPECT_EQ(session->editor.title(), "Plan");
    session->editor.titleEdited("Own");
    type("\nchanged");
    session->editor.save();
    EXPECT_EQ(session->library.notes.fetchNote(selected())->title, "Own");
    session->editor.titleEdited("");
    type(" more");
    session->editor.save();
    EXPECT_EQ(session->editor.title(), "Plan");
}

TEST_F(SessionTest, EditsAreSavedAfterTheIntervalAndSaidSoOnlyThen) {
    activate(CommandID::newNote);
    const Uuid id = selected();
    std::vector<SaveState::Kind> states;
    session->editor.signalSaveStateChanged().connect(
        [&] { states.push_back(session->editor.saveState().kind); });
    type("typed");
    EXPECT_EQ(storedText(id), "");
    EXPECT_THAT(states, ElementsAre(SaveState::Kind::edited));
    ASSERT_TRUE(turnUntil([&] { return storedText(id) == "typed"; }));
    EXPECT_THAT(states, ElementsAre(SaveState::Kind::edited, SaveState::Kind::saved));
    EXPECT_TRUE(session->editor.saveState().savedAt.has_value());
    const Date saved = session->library.notes.fetchNote(id)->modifiedAt;
    buffer = "typed";
    session->editor.contentEdited();
    session->editor.save();
    EXPECT_EQ(session->library.notes.fetchNote(id)->modifiedAt, saved)
        << "nothing differs, nothing is written";
}

TEST_F(SessionTest, SwitchingNotesSavesTheOneThatIsLeft) {
    activate(CommandID::newNote);
    const Uuid first = selected();
    type("first");
    activate(CommandID::newNote);
    EXPECT_NE(selected(), first);
    EXPECT_EQ(storedText(first), "first");
    EXPECT_EQ(buffer, "");
    session->state.selectedNoteID.set(first);
    EXPECT_EQ(buffer, "first");
    session->state.selectedNoteID.set(Uuid::random());
    EXPECT_FALSE(session->state.selectedNoteID.get().has_value())
        << "a note that is gone is not selected";
    EXPECT_EQ(session->list.size(), 1U) << "an empty new note that is left is gone";
}

TEST_F(SessionTest, ASaveNeverUndoesWhatWasDoneToTheNoteMeanwhile) {
    activate(CommandID::newNote);
    const Uuid id = selected();
    type("text");
    activate(CommandID::togglePin);
    activate(CommandID::moveToTrash);
    type(" and more");
    EXPECT_TRUE(session->editor.save());
    const auto stored = session->library.notes.fetchNote(id);
    EXPECT_TRUE(stored->isTrashed && stored->isPinned);
    EXPECT_EQ(stored->content, "text and more");
    session->list.deletePermanently({id});
    EXPECT_FALSE(session->editor.note().has_value());
}

TEST_F(SessionTest, FoldersOfANoteThatIsBeingWrittenAreThoseThatWereChosen) {
    session->preferences.setAutoSaveInterval(60);
    auto& folders = session->library.folders;
    const Uuid one = folders.createFolder("One", {}).id;
    const Uuid two = folders.createFolder("Two", {}).id;
    activate(CommandID::newNote);
    const Uuid id = selected();
    const auto foldersAfterSave = [&] {
        type("x");
        EXPECT_TRUE(session->editor.save());
        auto ids = session->library.notes.fetchNote(id)->folderIDs;
        std::ranges::sort(ids);
        return ids;
    };
    type("text");
    session->list.addToFolder({id}, one);
    type(" and");
    session->list.addToFolder({id}, two);
    EXPECT_THAT(foldersAfterSave(), testing::UnorderedElementsAre(one, two));
    type(" more");
    session->list.removeFromFolder({id}, one);
    EXPECT_THAT(foldersAfterSave(), ElementsAre(two));
    type(" yet");
    session->list.removeFromAllFolders({id});
    EXPECT_THAT(foldersAfterSave(), testing::IsEmpty());
    EXPECT_EQ(storedText(id), "text andx morex yetx");
}

TEST_F(SessionTest, ATitleAloneIsSaved) {
    activate(CommandID::newNote);
    type("# Plan");
    ASSERT_TRUE(session->editor.save());
    session->editor.titleEdited("Own");
    ASSERT_TRUE(session->editor.save());
    EXPECT_EQ(session->library.notes.fetchNote(selected())->title, "Own");
}

TEST_F(SessionTest, OnlyANoteThatWasNeverWrittenGoesByItself) {
    activate(CommandID::newNote);
    const Uuid emptied = selected();
    type("text");
    ASSERT_TRUE(session->editor.save());
    buffer.clear();
    session->editor.contentEdited();
    ASSERT_TRUE(session->editor.save());
    const auto file = folder.write("empty.md", "");
    const Uuid linked = session->list.createLocalFileNote(file).noteID.value();
    session->state.selectedNoteID.set(linked);
    activate(CommandID::newNote);
    activate(CommandID::newNote);
    EXPECT_EQ(storedText(emptied), "");
    EXPECT_TRUE(session->library.notes.fetchNote(linked));
    EXPECT_EQ(session->list.size(), 3U) << "of the two new notes the open one is left";
}

TEST_F(SessionTest, ARefusedSaveKeepsTheNoteOpenAndTriesAgain) {
    const Uuid written = editOnADiskThatCanFill();
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        EXPECT_FALSE(session->editor.save());
        EXPECT_EQ(session->editor.saveState().kind, SaveState::Kind::failed);
        EXPECT_FALSE(session->editor.saveState().reason.empty());
        session->state.selectedNoteID.set(std::nullopt);
        EXPECT_EQ(selected(), written);
        EXPECT_FALSE(session->finish());
    }
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                testing::StartsWith("Error saving note: database or disk is full"));
    ASSERT_TRUE(
        turnUntil([&] { return session->editor.saveState().kind == SaveState::Kind::saved; }));
    close();
    open();
    EXPECT_EQ(storedText(written), "words that matter");
}

// The refused text stands in the open transaction and so equals what the store reads back.
TEST_F(SessionTest, AnotherRefusedChangeDoesNotMakeARefusedTextPassForSaved) {
    const Uuid written = editOnADiskThatCanFill();
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        EXPECT_FALSE(session->editor.save());
        session->list.togglePin({written});
        EXPECT_EQ(session->editor.saveState().kind, SaveState::Kind::failed);
        EXPECT_FALSE(session->finish());
        EXPECT_EQ(session->editor.saveState().kind, SaveState::Kind::failed);
        EXPECT_EQ(session->editor.saveState().fault, StoreFault::diskFull);
    }
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(session->finish());
    close();
    open();
    EXPECT_EQ(storedText(written), "words that matter");
    EXPECT_TRUE(session->library.notes.fetchNote(written)->isPinned);
}

TEST_F(SessionTest, AnOrderlyEndSavesARefusedPinOrSaysThatItCannot) {
    FullDisk::makePossible();
    close();
    open();
    activate(CommandID::newNote);
    type("words");
    EXPECT_TRUE(session->finish());
    const Uuid written = selected();
    testing::internal::CaptureStdout();
    {
        const FullDisk fullDisk;
        session->list.togglePin({written});
        EXPECT_FALSE(session->finish());
    }
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(session->finish());
    close();
    open();
    EXPECT_TRUE(session->library.notes.fetchNote(written)->isPinned);
}

TEST_F(SessionTest, TheNextRunShowsWhatTheLastOneShowed) {
    const auto made = session->sidebar.createFolder("f", std::nullopt);
    session->state.sidebarFilter.set(SidebarFilter::folder(made->id));
    session->state.sortOption.set(SortOption::title);
    activate(CommandID::newNote);
    type("kept");
    const Uuid id = selected();
    EXPECT_TRUE(session->finish());
    close();
    open();
    EXPECT_EQ(session->state.sidebarFilter.get(), SidebarFilter::folder(made->id));
    EXPECT_EQ(session->state.sortOption.get(), SortOption::title);
    EXPECT_EQ(session->state.selectedNoteID.get(), id);
    EXPECT_EQ(buffer, "kept");
    session->sidebar.deleteFolder(made->id);
    session->finish();
    close();
    open();
    EXPECT_EQ(session->state.sidebarFilter.get(), SidebarFilter{});
}

TEST_F(SessionTest, SearchingAndFilteringDriveTheList) {
    activate(CommandID::newNote);
    type("needle");
    session->editor.save();
    activate(CommandID::findInAllNotes);
    session->state.searchQuery.set("NEED");
    ASSERT_TRUE(turnUntil([&] { return session->list.size() == 1; }));
    session->state.searchQuery.set("straw");
    ASSERT_TRUE(turnUntil([&] { return session->list.isSearchFinished(); }));
    EXPECT_EQ(session->list.size(), 0U);
    session->state.sidebarFilter.set({SidebarFilter::Kind::unfiled, {}, {}});
    EXPECT_FALSE(session->state.isSearchActive.get());
    EXPECT_EQ(session->list.size(), 1U);
    session->state.sidebarFilter.set({SidebarFilter::Kind::trash, {}, {}});
    activate(CommandID::newNote);
    EXPECT_EQ(session->state.sidebarFilter.get(), SidebarFilter{})
        << "a new note is shown where it is listed";
}

TEST_F(SessionTest, CommandsPostSetOrOpen) {
    std::vector<std::string> posted;
    const auto watch = session->notifications.observe(
        notifications::importMarkdown, [&](const std::any&) { posted.emplace_back("import"); });
    activate(CommandID::importMarkdown);
    EXPECT_THAT(posted, ElementsAre("import"));
    activate(CommandID::togglePreview);
    EXPECT_EQ(session->state.editorMode.get(), EditorMode::preview);
    activate(CommandID::togglePreview);
    EXPECT_EQ(session->state.editorMode.get(), EditorMode::split) << "as it was before";
    activate(CommandID::toggleSplitView);
    EXPECT_EQ(session->state.editorMode.get(), EditorMode::editor);
    activate(CommandID::togglePreview);
    activate(CommandID::togglePreview);
    EXPECT_EQ(session->state.editorMode.get(), EditorMode::editor);
    activate(CommandID::switchLanguage);
    EXPECT_TRUE(session->texts.isEnglish());
    activate(CommandID::about);
    EXPECT_THAT(opened, ElementsAre(CommandID::about));
    EXPECT_FALSE(session->commands.isEnabled(CommandID::togglePin)) << "no note is selected";
    EXPECT_FALSE(session->commands.isEnabled(CommandID::exportNote));
    activate(CommandID::exportNote);
    EXPECT_FALSE(session->state.isExportSheetPresented.get());
    EXPECT_EQ(AppCommands::shortcutText(CommandID::findInAllNotes), "Ctrl+Shift+F");
    EXPECT_EQ(AppCommands::shortcutText(CommandID::markdownGuide), "Ctrl+/");
    EXPECT_EQ(AppCommands::shortcutText(CommandID::about), "");
}

TEST(AppCommands, NoTwoCommandsShareAKeyOrAName) {
    std::set<std::string> keys;
    std::set<std::string> names;
    for (const Command& command : AppCommands::table()) {
        EXPECT_TRUE(names.insert(command.actionName).second) << command.actionName;
        const std::string key = command.accelerator;
        EXPECT_TRUE(key.empty() || keys.insert(key).second) << key;
        EXPECT_STRNE(command.label.polish, "");
        EXPECT_STRNE(command.label.english, "");
    }
}

}  // namespace
}  // namespace corvel
