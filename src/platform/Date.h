#pragma once

#include <compare>
#include <cstdint>

namespace corvel {

/// A moment: microseconds since 1970-01-01 00:00 UTC.
struct Date {
    std::int64_t microseconds = 0;

    static Date now();
    static constexpr Date fromSeconds(std::int64_t seconds) { return {seconds * 1'000'000}; }

    constexpr std::int64_t seconds() const { return microseconds / 1'000'000; }
    constexpr Date plusSeconds(double amount) const {
        return {microseconds + static_cast<std::int64_t>(amount * 1e6)};
    }

    constexpr auto operator<=>(const Date&) const = default;
};

}  // namespace corvel
