#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeFile.h"
#include "themes/ThemeManager.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <iterator>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

/// While one lives, no byte reaches any file: as on a full disk.
class NoRoom {
public:
    NoRoom() : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_limit);
        rlimit none = m_limit;
        none.rlim_cur = 0;
        setrlimit(RLIMIT_FSIZE, &none);
    }
    NoRoom(const NoRoom&) = delete;
    NoRoom& operator=(const NoRoom&) = delete;
    ~NoRoom() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_limit{};
};

class ThemeManagerTest : public testing::Test {
protected:
    ThemeManager& start(bool isSystemDark = false) {
        manager.reset();
        defaults = std::make_unique<UserDefaults>(folder.path() / "preferences.ini");
        manager = std::make_unique<ThemeManager>(*defaults, themes(),
                                                 [isSystemDark] { return isSystemDark; });
        return *manager;
    }

    std::filesystem::path themes() const { return folder.path() / "deep" / "Themes"; }

    static Theme named(const std::string& name) {
        Theme theme = themes::builtInSepia();
        theme.id = Uuid::random();
        theme.name = name;
        theme.isBuiltIn = false;
        return theme;
    }

    void put(const std::string& fileName, const std::string& bytes) const {
        folder.write(std::filesystem::path("deep/Themes") / fileName, bytes);
    }
    void put(const std::string& fileName, const Theme& theme) const {
        put(fileName, ThemeFile::encode(theme));
    }

    /// Names of the themes beside the built-in ones.
    std::vector<std::string> ofUser() const {
        std::vector<std::string> names;
        const auto& all = manager->availableThemes();
        for (std::size_t i = 3; i < all.size(); ++i)
            names.push_back(all[i].name);
        return names;
    }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(themes()))
            names.push_back(entry.path().filename());
        return names;
    }
    std::string stored() const { return defaults->string("selectedThemeID").value_or(""); }

    TemporaryFolder folder;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<ThemeManager> manager;
};

TEST_F(ThemeManagerTest, StartsWithTheBuiltInOnesAndMakesItsFolder) {
    start();
    EXPECT_THAT(manager->availableThemes(),
                ElementsAre(themes::builtInLight(), themes::builtInDark(), themes::builtInSepia()));
    EXPECT_TRUE(std::filesystem::is_directory(themes()));
}

TEST_F(ThemeManagerTest, FollowsTheSystemUntilAThemeOfTheUserIsStored) {
    start(true);
    EXPECT_EQ(manager->currentTheme(), themes::builtInDark());
    EXPECT_EQ(stored(), themes::builtInDark().id.toString());

    defaults->setString("selectedThemeID", "no id");
    EXPECT_EQ(start(false).currentTheme(), themes::builtInLight());
    // A built-in id of another run.
    defaults->setString("selectedThemeID", Uuid::random().toString());
    EXPECT_EQ(start(true).currentTheme(), themes::builtInDark());

    const Theme night = named("Night");
    ASSERT_TRUE(manager->saveTheme(night));
    manager->selectTheme(night);
    EXPECT_EQ(start(true).currentTheme(), night);
    std::filesystem::remove(themes() / "night.qnotheme");
    EXPECT_EQ(start(false).currentTheme(), themes::builtInLight());
    EXPECT_EQ(stored(), themes::builtInLight().id.toString());
}

TEST_F(ThemeManagerTest, LoadsWhatIsAThemeAndSkipsTheRest) {
    const Theme a = named("A");
    put("a.qnotheme", a);
    put("b.json", named("B"));
    put("copy of a.json", a);
    put("c.JSON", named("C"));
    put("d.qnotheme.bak", named("D"));
    put("half.qnotheme", ThemeFile::encode(named("E")).substr(0, 300));
    put("empty.json", std::string());
    put("large.json", std::string(2 << 20, ' ') + ThemeFile::encode(named("F")));
    std::filesystem::create_directory(themes() / "folder.json");
    std::filesystem::create_symlink("nowhere", themes() / "link.json");
    ASSERT_EQ(mkfifo((themes() / "pipe.json").c_str(), 0600), 0);
    start();
    EXPECT_THAT(ofUser(), UnorderedElementsAre("A", "A", "B"));
}

TEST_F(ThemeManagerTest, WorksWithoutItsFolder) {
    folder.write("deep", "a file where the folder would be");
    start();
    EXPECT_EQ(manager->availableThemes().size(), 3U);
    EXPECT_FALSE(manager->saveTheme(named("Night")));
    EXPECT_EQ(manager->availableThemes().size(), 3U);
}

TEST_F(ThemeManagerTest, SavesUnderOneNameWhatDiffersOnlyInCase) {
    start();
    int changes = 0;
    manager->signalAvailableChanged().connect([&] { ++changes; });
    const Theme second = named("night");
    ASSERT_TRUE(manager->saveTheme(named("Night")));
    ASSERT_TRUE(manager->saveTheme(second));
    EXPECT_EQ(changes, 2);
    EXPECT_THAT(files(), ElementsAre("night.qnotheme"));
    ASSERT_EQ(manager->availableThemes().size(), 4U);
    EXPECT_EQ(manager->availableThemes()[3], second);
}

TEST_F(ThemeManagerTest, KeepsTheOldFileWhenTheNewOneCannotBeWritten) {
    start();
    const Theme night = named("Night");
    ASSERT_TRUE(manager->saveTheme(night));
    Theme changed = night;
    changed.colors.link = "#123456";
    {
        const NoRoom noRoom;
        EXPECT_FALSE(manager->saveTheme(changed));
    }
    changed.typography.lineHeight = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(manager->saveTheme(changed));
    EXPECT_THAT(files(), ElementsAre("night.qnotheme"));
    EXPECT_EQ(start().availableThemes().at(3), night);
}

TEST_F(ThemeManagerTest, ImportsAThemeUnderItsOwnName) {
    start();
    Theme theme = named("From/../Afar");
    theme.isBuiltIn = true;
    EXPECT_TRUE(manager->importTheme(folder.write("any name.txt", ThemeFile::encode(theme))));
    EXPECT_THAT(files(), ElementsAre("from-..-afar.qnotheme"));
    EXPECT_FALSE(manager->availableThemes().at(3).isBuiltIn);

    EXPECT_FALSE(manager->importTheme(folder.write("bad.qnotheme", "{}")));
    EXPECT_FALSE(manager->importTheme(folder.path() / "missing.qnotheme"));
    EXPECT_THAT(ofUser(), ElementsAre("From/../Afar"));
}

TEST_F(ThemeManagerTest, DeletesByTheNameOfTheThemeAndNeverABuiltInOne) {
    put("foo.json", named("Foo"));
    put("corvel-light.qnotheme", named("Corvel Light"));
    start(true);
    ASSERT_TRUE(manager->saveTheme(named("Night")));
    const auto deleteNamed = [this](const std::string& name) {
        const auto all = manager->availableThemes();
        const auto found = std::ranges::find(all, name, &Theme::name);
        ASSERT_NE(found, all.end());
        manager->deleteTheme(*found);
    };
    deleteNamed("Corvel Light");
    deleteNamed("Foo");
    EXPECT_THAT(ofUser(), UnorderedElementsAre("Night", "Foo", "Corvel Light"));
    deleteNamed("Night");
    EXPECT_THAT(ofUser(), UnorderedElementsAre("Foo", "Corvel Light"));
    EXPECT_EQ(manager->currentTheme(), themes::builtInDark()) << "the current one was another";
}

TEST_F(ThemeManagerTest, FallsBackToLightWhenTheCurrentThemeIsDeleted) {
    start(true);
    const Theme night = named("Night");
    manager->saveTheme(night);
    manager->selectTheme(night);
    int changes = 0;
    manager->signalCurrentChanged().connect([&] { ++changes; });
    manager->deleteTheme(manager->availableThemes().at(3));
    EXPECT_EQ(manager->currentTheme(), themes::builtInLight());
    EXPECT_EQ(stored(), themes::builtInLight().id.toString());
    EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace corvel
