#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// A 128-bit identifier as of RFC 9562. A default-constructed one is all zeros and names nothing.
struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A fresh random identifier (version 4) from the system's random source.
    static Uuid random();

    /// Reads the 36-character form with hyphens, in either case; anything else gives none.
    static std::optional<Uuid> parse(std::string_view text);

    /// The 36-character form in upper case.
    std::string toString() const;

    auto operator<=>(const Uuid&) const = default;
};

}  // namespace corvel

template <>
struct std::hash<corvel::Uuid> {
    std::size_t operator()(const corvel::Uuid& id) const noexcept {
        return std::hash<std::string_view>{}(
            {reinterpret_cast<const char*>(id.bytes.data()), id.bytes.size()});
    }
};
