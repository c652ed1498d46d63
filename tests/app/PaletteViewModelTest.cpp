#include "app/Session.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace corvel {
namespace {

using testing::ElementsAre;
using Kind = PaletteViewModel::Kind;

class PaletteTest : public testing::Test {
protected:
    PaletteTest() { session.start(); }

    Uuid add(const std::string& title) {
        Note note;
        note.id = Uuid::random();
        note.title = title;
        note.content = title;
        note.createdAt = Date::fromSeconds(1);
        note.modifiedAt = Date::fromSeconds(++m_time);
        session.library.notes.create(note);
        return note.id;
    }
    std::vector<std::string> labels() {
        std::vector<std::string> found;
        for (const auto& item : palette.items()) {
            found.push_back(item.label);
        }
        return found;
    }

    TemporaryFolder folder;
    PersistenceController controller{PersistenceController::Storage::onDisk, folder.path()};
    UserDefaults defaults{folder.path() / "preferences.ini"};
    ThemeManager themes{defaults, folder.path() / "Themes", [] { return false; }};
    Session session{controller, defaults, themes, {}};
    PaletteViewModel& palette = session.palette;

private:
    std::int64_t m_time = 0;
};

TEST_F(PaletteTest, EveryCommandIsListedWithItsKeyAndWhetherItCanBeUsed) {
    palette.open(Kind::commands);
    EXPECT_EQ(palette.items().size(), AppCommands::table().size() - 1)
        << "all but the palette's own";
    palette.setQuery("przypnij");
    ASSERT_FALSE(palette.items().empty());
    EXPECT_EQ(palette.items()[0].detail, "Ctrl+D");
    EXPECT_FALSE(palette.items()[0].isEnabled) << "no note is open";
    EXPECT_FALSE(palette.chosen().has_value());
    session.preferences.setAppLanguage("en");
    session.state.selectedNoteID.set(add("a note"));
    palette.setQuery("pin un");
    EXPECT_THAT(labels(), testing::Contains("Pin or Unpin"));
    EXPECT_EQ(std::get<CommandID>(palette.chosen().value()), CommandID::togglePin);
}

TEST_F(PaletteTest, WithoutAQueryTheNotesOpenedLastComeFirstThenTheOpenOne) {
    const Uuid a = add("A");
    const Uuid b = add("B");
    add("C");
    const Uuid d = add("D");
    for (const Uuid& id : {d, b, a}) {
        session.state.selectedNoteID.set(id);
    }
    palette.open(Kind::notes);
    EXPECT_THAT(labels(), ElementsAre("B", "D", "A", "C"));
    session.library.notes.moveToTrash(b);
    palette.open(Kind::notes);
    EXPECT_THAT(labels(), ElementsAre("D", "A", "C"));
    session.finish();
    EXPECT_THAT(RecentNotes(defaults).ids(), ElementsAre(a, b, d)) << "kept for the next run";
}

TEST_F(PaletteTest, TheChoiceMovesByStepsAroundAndByPagesToTheEnds) {
    for (int i = 0; i < 15; ++i) {
        add("note " + std::to_string(i));
    }
    palette.open(Kind::notes);
    palette.setQuery("note");
    EXPECT_EQ(palette.selected(), 0U);
    palette.moveBy(-1);
    EXPECT_EQ(palette.selected(), 14U);
    palette.moveBy(1);
    EXPECT_EQ(palette.selected(), 0U);
    palette.moveBy(10);
    palette.moveBy(10);
    EXPECT_EQ(palette.selected(), 14U);
    palette.setQuery("note 1");
    EXPECT_EQ(palette.selected(), 0U) << "a new list begins at its top";
    palette.setQuery("nothing like it");
    palette.moveBy(1);
    EXPECT_FALSE(palette.chosen().has_value());
}

}  // namespace
}  // namespace corvel
