#include "library/IsoDate.h"

#include "platform/Handle.h"

#include <glib.h>

#include <array>
#include <chrono>
#include <cstdio>

namespace corvel {

namespace {

constexpr int kFirstYear = 1;
constexpr int kLastYear = 9999;
constexpr std::int64_t kMicroseconds = 1'000'000;

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

// Takes the fraction of the second out of `text`: GLib reads it as a floating-point number.
std::int64_t takeFraction(std::string& text) {
    const auto mark = text.find_first_of(".,");
    if (mark == std::string::npos) return 0;
    std::int64_t value = 0;
    std::int64_t unit = kMicroseconds / 10;
    std::size_t end = mark + 1;
    for (; end < text.size() && isDigit(text[end]); ++end) {
        value += unit * (text[end] - '0');
        unit /= 10;
    }
    text.erase(mark, end - mark);
    return value;
}

}  // namespace

std::optional<std::string> isoDate(Date date) {
    using namespace std::chrono;
    const sys_time<microseconds> moment{microseconds(date.microseconds)};
    const auto midnight = floor<days>(moment);
    const year_month_day day{midnight};
    if (int(day.year()) < kFirstYear || int(day.year()) > kLastYear) return std::nullopt;
    const hh_mm_ss time{moment - midnight};
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02ld:%02ld:%02ld.%06ldZ",
                  int(day.year()), unsigned(day.month()), unsigned(day.day()),
                  long(time.hours().count()), long(time.minutes().count()),
                  long(time.seconds().count()), long(time.subseconds().count()));
    return text.data();
}

std::optional<Date> dateFromIso(std::string text) {
    const std::int64_t fraction = takeFraction(text);
    const Handle<GTimeZone, g_time_zone_unref> utc(g_time_zone_new_utc());
    const Handle<GDateTime, g_date_time_unref> moment(
        g_date_time_new_from_iso8601(text.c_str(), utc.get()));
    if (!moment) return std::nullopt;
    return Date{g_date_time_to_unix(moment.get()) * kMicroseconds + fraction};
}

}  // namespace corvel
