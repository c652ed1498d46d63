#include "support/FileContent.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

namespace corvel {
namespace {

using testing::HasSubstr;

TEST(ThemeStylesheet, OfTheDarkThemeIsTheRecordedSheet) {
    const std::string recorded = contentOf(CORVEL_TEST_DATA "/themes/cases/dark.css");
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(generateCSS(themes::builtInDark()), recorded);
}

TEST(ThemeStylesheet, WritesSizesAsWholePixelsAndHeightsAsDecimals) {
    const auto css = [](double size, double height) {
        Theme theme = themes::builtInDark();
        theme.typography.baseFontSize = size;
        theme.typography.lineHeight = height;
        return generateCSS(theme);
    };
    EXPECT_THAT(css(13.7, 2.0), HasSubstr("font-size: 13px;\n    line-height: 2.0;"));
    EXPECT_THAT(css(-3.5, 1.25), HasSubstr("font-size: -3px;\n    line-height: 1.25;"));
    EXPECT_THAT(css(15, 0.1 + 0.2), HasSubstr("line-height: 0.30000000000000004;"));
    EXPECT_DEATH(css(std::numeric_limits<double>::infinity(), 1), "font size");
    EXPECT_DEATH(css(9223372036854775808.0, 1), "font size");
}

}  // namespace
}  // namespace corvel
