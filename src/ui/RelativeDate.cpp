#include "ui/RelativeDate.h"

#include "app/Texts.h"

#include <glibmm/datetime.h>

#include <array>
#include <cstddef>

namespace corvel {

namespace {

constexpr std::array kEnglishMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                    "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

Glib::DateTime localTime(Date date) {
    return Glib::DateTime::create_now_local(date.seconds());
}

Glib::DateTime midnightOf(const Glib::DateTime& day) {
    return Glib::DateTime::create_local(day.get_year(), day.get_month(), day.get_day_of_month(), 0,
                                        0, 0);
}

bool isSameDay(const Glib::DateTime& a, const Glib::DateTime& b) {
    return a.get_year() == b.get_year() && a.get_day_of_year() == b.get_day_of_year();
}

std::string englishDay(const Glib::DateTime& day) {
    const auto month = static_cast<std::size_t>(day.get_month() - 1);
    return std::to_string(day.get_day_of_month()) + " " + kEnglishMonths.at(month);
}

}  // namespace

std::string relativeDate(Date date, Date now, const Localisation& texts) {
    const auto then = localTime(date);
    const auto today = localTime(now);
    if (!then || !today) return {};
    if (isSameDay(then, today)) return texts.format(texts::today, {then.format("%H:%M")});
    if (isSameDay(then, midnightOf(today).add_hours(-12))) return texts(texts::yesterday);
    const bool isThisYear = then.get_year() == today.get_year();
    if (!texts.isEnglish()) return then.format(isThisYear ? "%-d.%m" : "%-d.%m.%Y");
    return isThisYear ? englishDay(then) : englishDay(then) + " " + std::to_string(then.get_year());
}

Date nextMidnight(Date now) {
    // Half a day past the next midnight's day start is safe where clocks change.
    const auto tomorrow = midnightOf(midnightOf(localTime(now)).add_hours(36));
    return Date::fromSeconds(tomorrow.to_unix());
}

}  // namespace corvel
