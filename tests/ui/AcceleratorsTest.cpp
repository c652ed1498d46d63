#include "app/AppCommands.h"
#include "ui/WindowTest.h"

#include <gtkmm/accelerator.h>

#include <map>
#include <sstream>
#include <string>

namespace corvel {
namespace {

using AcceleratorsTest = WindowTest;

std::string nameOf(const Command& command) {
    return command.actionName;
}

TEST_F(AcceleratorsTest, EveryKeyOfTheTableIsOneTheToolkitKnowsAndNoTwoCommandsShareOne) {
    std::map<std::pair<guint, unsigned>, std::string> owners;
    int count = 0;
    for (const auto& command : AppCommands::table()) {
        std::istringstream keys(command.accelerator);
        for (std::string key; keys >> key;) {
            guint value = 0;
            auto modifiers = static_cast<GdkModifierType>(0);
            ASSERT_TRUE(gtk_accelerator_parse(key.c_str(), &value, &modifiers))
                << nameOf(command) << ": " << key;
            EXPECT_NE(value, 0U) << key;
            const auto [known, isNew] = owners.try_emplace(
                {gdk_keyval_to_lower(value), static_cast<unsigned>(modifiers)}, nameOf(command));
            EXPECT_TRUE(isNew) << key << " of " << nameOf(command) << " is also " << known->second
                               << "'s";
            ++count;
        }
    }
    EXPECT_GT(count, 20);
}

// Without Control or Alt a key would be taken from what is typed; function keys type nothing.
TEST_F(AcceleratorsTest, NoCommandTakesAKeyThatTypes) {
    for (const auto& command : AppCommands::table()) {
        std::istringstream keys(command.accelerator);
        for (std::string key; keys >> key;) {
            guint value = 0;
            auto modifiers = static_cast<GdkModifierType>(0);
            gtk_accelerator_parse(key.c_str(), &value, &modifiers);
            const bool isModified = (modifiers & (GDK_CONTROL_MASK | GDK_ALT_MASK)) != 0;
            EXPECT_TRUE(isModified || gdk_keyval_to_unicode(value) == 0) << key;
        }
    }
}

}  // namespace
}  // namespace corvel
