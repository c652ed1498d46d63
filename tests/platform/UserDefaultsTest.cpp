#include "platform/UserDefaults.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace corvel {

TEST(UserDefaults, ValuesOutliveTheRunAndWrongTypesAreAbsent) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "new" / "preferences.ini";
    {
        UserDefaults defaults(file);
        int changes = 0;
        defaults.signalChanged().connect([&](const std::string&) { ++changes; });
        defaults.setString("text", " ż;\\n\nline ");
        defaults.setReal("real", 0.1);
        defaults.setBoolean("flag", true);
        defaults.setBoolean("flag", true);
        defaults.setInteger("gone", 1);
        defaults.remove("gone");
        EXPECT_EQ(changes, 5);
    }
    const UserDefaults defaults(file);
    EXPECT_EQ(defaults.string("text"), " ż;\\n\nline ");
    EXPECT_EQ(defaults.real("real"), 0.1);
    EXPECT_EQ(defaults.boolean("flag"), true);
    EXPECT_EQ(defaults.integer("gone"), std::nullopt);
    EXPECT_EQ(defaults.integer("real"), std::nullopt);
    EXPECT_EQ(defaults.boolean("text"), std::nullopt);
}

TEST(UserDefaults, AFileThatIsNoKeyFileReadsAsEmpty) {
    const TemporaryFolder folder;
    UserDefaults defaults(folder.write("p.ini", "\xFF not a key file"));
    EXPECT_EQ(defaults.string("a"), std::nullopt);
    defaults.setInteger("a", 5);
    EXPECT_EQ(UserDefaults(folder.path() / "p.ini").integer("a"), 5);
}

}  // namespace corvel
