#include "themes/Color.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace corvel {

namespace {

constexpr double kReadable = 4.5;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpace = " \t\n\r\v\f";
    const auto first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

int hexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    if (character >= 'a' && character <= 'f') return character - 'a' + 10;
    if (character >= 'A' && character <= 'F') return character - 'A' + 10;
    return -1;
}

/// The low 32 bits of the number `text` begins with.
std::uint32_t hexPrefix(std::string_view text) {
    std::uint32_t value = 0;
    for (const char character : text) {
        const int digit = hexDigit(character);
        if (digit < 0) break;
        value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    return value;
}

double linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double luminance(const Color& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

int byteOf(double part) {
    return static_cast<int>(std::clamp(part, 0.0, 1.0) * 255.0);
}

}  // namespace

Color colorFromHex(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('#')) text.remove_prefix(1);
    const std::uint32_t value = hexPrefix(text);
    const auto part = [value](int shift) { return ((value >> shift) & 0xFFU) / 255.0; };
    if (text.size() == 8) return {part(24), part(16), part(8), part(0)};
    return {part(16), part(8), part(0), 1.0};
}

std::string hexString(const Color& color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02X%02X%02X", byteOf(color.red), byteOf(color.green),
                  byteOf(color.blue));
    return text.data();
}

double contrast(const Color& a, const Color& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Color mixed(const Color& a, const Color& b, double share) {
    const auto part = [share](double of, double rest) { return of * share + rest * (1 - share); };
    return {part(a.red, b.red), part(a.green, b.green), part(a.blue, b.blue), 1.0};
}

Color readableOn(Color color, const Color& ground) {
    const Color black;
    const Color white{1, 1, 1};
    // One of them has a contrast of more than 4.5 to any ground.
    const Color& end = contrast(ground, black) > contrast(ground, white) ? black : white;
    color.alpha = 1;
    while (contrast(color, ground) < kReadable)
        color = mixed(color, end, 0.97);
    return color;
}

}  // namespace corvel
