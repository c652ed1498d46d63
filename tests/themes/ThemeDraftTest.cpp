#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeDraft.h"
#include "themes/ThemeFile.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

class ThemeDraftTest : public testing::Test {
protected:
    /// A theme of the user in a file of this name, loaded again.
    Theme stored(const std::string& name, const std::string& fileName) {
        Theme theme = themes::builtInSepia();
        theme.id = Uuid::random();
        theme.name = name;
        theme.isBuiltIn = false;
        folder.write(fileName, ThemeFile::encode(theme));
        manager.loadThemes();
        return theme;
    }

    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences"};
    ThemeManager manager{defaults, folder.path(), [] { return false; }};
};

TEST_F(ThemeDraftTest, OfAThemeIsWrittenBackIntoItsFile) {
    const Theme night = stored("Night", "night.qnotheme");
    ThemeDraft draft = ThemeDraft::editing(night);
    EXPECT_FALSE(draft.isEdited());
    draft.theme.colors.link = "#123456";
    EXPECT_TRUE(draft.isEdited());
    EXPECT_FALSE(draft.replacesAnother(manager));
    EXPECT_EQ(draft.result(manager).id, night.id);
    draft.theme.name = "NIGHT";
    EXPECT_EQ(draft.result(manager).id, night.id) << "the same file";
}

TEST_F(ThemeDraftTest, UnderAnotherNameIsAThemeOfItsOwn) {
    const Theme night = stored("Night", "night.qnotheme");
    const Theme foreign = stored("Foreign", "hand-named.json");
    stored("Taken", "taken.qnotheme");
    ThemeDraft draft = ThemeDraft::editing(night);
    draft.theme.name = "Later";
    EXPECT_FALSE(draft.replacesAnother(manager));
    EXPECT_NE(draft.result(manager).id, night.id);
    draft.theme.name = "taken";
    EXPECT_TRUE(draft.replacesAnother(manager));
    EXPECT_NE(ThemeDraft::editing(foreign).result(manager).id, foreign.id);
}

TEST_F(ThemeDraftTest, OfABuiltInThemeIsACopy) {
    const ThemeDraft edited = ThemeDraft::editing(manager.lightTheme());
    EXPECT_TRUE(edited.isNew());
    EXPECT_FALSE(edited.result(manager).isBuiltIn);
    EXPECT_NE(edited.result(manager).id, manager.lightTheme().id);

    stored("New", "new.qnotheme");
    stored("New 2", "new-2.qnotheme");
    const ThemeDraft copy = ThemeDraft::copying(manager.darkTheme(), "New", manager);
    EXPECT_EQ(copy.theme.name, "New 3");
    EXPECT_EQ(copy.theme.colors, manager.darkTheme().colors);
    EXPECT_EQ(copy.result(manager).id, copy.theme.id);
}

TEST_F(ThemeDraftTest, NeverReplacesAFileThatIsNoThemeWithoutAQuestion) {
    folder.write("night.qnotheme", "half a theme, still somebody's work");
    ThemeDraft draft = ThemeDraft::copying(manager.lightTheme(), "Night", manager);
    EXPECT_TRUE(draft.replacesAnother(manager));
    draft.theme.name = " \t";
    EXPECT_FALSE(draft.hasName());
}

}  // namespace
}  // namespace corvel
