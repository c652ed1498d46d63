#include "ui/FontFamily.h"

#include "platform/Text.h"

#include <glib.h>

#include <array>

namespace corvel {

namespace {

constexpr std::size_t kLongestName = 100;  // bytes

bool isPlain(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return g_ascii_isalnum(character) != FALSE || character == ' ' || byte >= 0x80;
}

}  // namespace

std::string fontFamily(const std::string& name) {
    return std::string(text::prefixByBytes(
        name.substr(0, name.find_first_of(std::string(",\0", 2))), kLongestName));
}

std::string quotedFontFamily(const std::string& name) {
    std::string quoted = "\"";
    for (const char character : fontFamily(name)) {
        if (isPlain(character)) {
            quoted += character;
            continue;
        }
        std::array<char, 12> escape{};
        g_snprintf(escape.data(), escape.size(), "\\%06x ", static_cast<unsigned>(character));
        quoted += escape.data();
    }
    return quoted += '"';
}

}  // namespace corvel
