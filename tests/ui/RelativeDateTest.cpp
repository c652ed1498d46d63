#include "app/settings/Preferences.h"
#include "support/TemporaryFolder.h"
#include "ui/RelativeDate.h"

#include <glib.h>
#include <glibmm/datetime.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace corvel {
namespace {

/// Dates of one time zone, in both languages.
class RelativeDateTest : public testing::Test {
protected:
    ~RelativeDateTest() override { useZone(nullptr); }

    static void useZone(const char* name) {
        if (name != nullptr) {
            setenv("TZ", name, 1);
        } else {
            unsetenv("TZ");
        }
        tzset();
    }

    static Date at(int year, int month, int day, int hour = 12, int minute = 0) {
        return Date::fromSeconds(
            Glib::DateTime::create_local(year, month, day, hour, minute, 0).to_unix());
    }

    std::string polish(Date date, Date now) {
        preferences.setAppLanguage("pl");
        return relativeDate(date, now, texts);
    }
    std::string english(Date date, Date now) {
        preferences.setAppLanguage("en");
        return relativeDate(date, now, texts);
    }

    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
};

TEST_F(RelativeDateTest, TodayEndsAtMidnightOfTheDesktopsTimeZone) {
    for (const char* zone : {"Europe/Warsaw", "America/Los_Angeles", "Pacific/Auckland", "UTC"}) {
        useZone(zone);
        const Date now = at(2026, 11, 23, 0, 1);
        EXPECT_EQ(polish(at(2026, 11, 23, 0, 0), now), "dziś, 00:00") << zone;
        EXPECT_EQ(polish(at(2026, 11, 22, 23, 59), now), "wczoraj") << zone;
        EXPECT_EQ(english(at(2026, 11, 22, 0, 0), now), "yesterday") << zone;
        EXPECT_EQ(english(at(2026, 11, 21, 23, 59), now), "21 Nov") << zone;
        EXPECT_EQ(nextMidnight(now), at(2026, 11, 24, 0, 0)) << zone;
    }
}

TEST_F(RelativeDateTest, TheYearIsToldWhenItIsAnother) {
    useZone("Europe/Warsaw");
    const Date newYear = at(2027, 1, 1, 9);
    EXPECT_EQ(polish(at(2026, 12, 31), newYear), "wczoraj");
    EXPECT_EQ(polish(at(2026, 12, 30), newYear), "30.12.2026");
    EXPECT_EQ(english(at(2026, 12, 30), newYear), "30 Dec 2026");
    EXPECT_EQ(polish(at(2027, 3, 5), newYear), "5.03") << "a clock that was set back";
}

TEST_F(RelativeDateTest, DaysOfOtherLengthsAreDaysToo) {
    useZone("Europe/Warsaw");
    const Date shortDay = at(2026, 3, 29, 23, 30);  // 23 hours
    EXPECT_EQ(polish(at(2026, 3, 28, 0, 10), shortDay), "wczoraj");
    EXPECT_EQ(nextMidnight(shortDay), at(2026, 3, 30, 0, 0));
    const Date longDay = at(2026, 10, 25, 0, 10);  // 25 hours
    EXPECT_EQ(polish(at(2026, 10, 24, 0, 10), longDay), "wczoraj");
    EXPECT_EQ(nextMidnight(longDay), at(2026, 10, 26, 0, 0));
    EXPECT_EQ(polish(at(2026, 10, 24, 23, 0), at(2026, 10, 26, 0, 10)), "24.10");
}

}  // namespace
}  // namespace corvel
