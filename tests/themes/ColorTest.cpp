#include "themes/BuiltInThemes.h"
#include "themes/Color.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

TEST(Color, IsReadFromTextThatPeopleWrote) {
    EXPECT_EQ(colorFromHex("#007AFF33"), (Color{0, 0x7A / 255.0, 1, 0x33 / 255.0}));
    EXPECT_EQ(colorFromHex(" #1a1a1a\n"), colorFromHex("#1A1A1A"));
    EXPECT_EQ(colorFromHex("007AFF"), (Color{0, 0x7A / 255.0, 1, 1}));
    EXPECT_EQ(colorFromHex("#FFF"), (Color{0, 0x0F / 255.0, 1, 1}));
    EXPECT_EQ(colorFromHex("#1234567"), (Color{0x23 / 255.0, 0x45 / 255.0, 0x67 / 255.0, 1}));
    EXPECT_EQ(colorFromHex("no colour"), (Color{0, 0, 0, 1}));
    EXPECT_EQ(colorFromHex(""), (Color{0, 0, 0, 1}));
}

TEST(Color, IsWrittenWithoutAlpha) {
    EXPECT_EQ(hexString(colorFromHex("#007AFF33")), "#007AFF");
    EXPECT_EQ(hexString({0.999, 0.5, 2.0, 1}), "#FE7FFF");
}

TEST(Color, OfSelectedRowsCarriesWhiteText) {
    for (const Theme* theme :
         {&themes::builtInLight(), &themes::builtInDark(), &themes::builtInSepia()}) {
        const Color accent = underWhiteText(colorFromHex(theme->colors.accent));
        EXPECT_GE(contrast(accent, {1, 1, 1}), 4.5) << theme->name;
        EXPECT_LT(contrast(accent, {1, 1, 1}), 5.2) << theme->name;
    }
}

}  // namespace
}  // namespace corvel
