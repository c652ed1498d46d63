#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// An sRGB colour, each part in 0..1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Color&) const = default;
};

/// Reads "#RRGGBBAA" when exactly eight characters follow the optional "#", else "#RRGGBB" from the
/// low 24 bits. Never fails: a malformed text gives some colour, usually black.
Color colorFromHex(std::string_view text);

/// "#RRGGBB"; the alpha is left out.
std::string hexString(const Color& color);

/// Contrast of two opaque colours as WCAG 2 defines it, 1 to 21.
double contrast(const Color& a, const Color& b);

/// `share` of `a`, the rest of `b`.
Color mixed(const Color& a, const Color& b, double share);

/// `color`, brought towards black or white until it is readable as text on `ground` (contrast of at
/// least 4.5).
Color readableOn(Color color, const Color& ground);

/// `color`, brought towards black until white text on it is readable.
inline Color underWhiteText(const Color& color) {
    return readableOn(color, {1, 1, 1});
}

}  // namespace corvel
