#include "markdown/PatternSpace.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace corvel {

std::size_t spaceLengthAt(std::string_view text, std::size_t position) {
    if (position >= text.size()) return 0;
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte < 0x80) return byte == ' ' || (byte >= '\t' && byte <= '\r') ? 1 : 0;
    // All others are U+0085, U+00A0, U+1680, U+20xx and U+3000: three lead bytes and one more.
    if (byte != 0xC2 && (byte < 0xE1 || byte > 0xE3)) return 0;
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t end = position;
    UChar32 character = 0;
    U8_NEXT(bytes, end, text.size(), character);
    return character >= 0 && u_isUWhiteSpace(character) != 0 ? end - position : 0;
}

std::size_t skipSpaces(std::string_view text, std::size_t position) {
    while (const std::size_t length = spaceLengthAt(text, position))
        position += length;
    return position;
}

}  // namespace corvel
