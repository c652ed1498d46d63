#include "platform/Characters.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace corvel::text {

namespace {

const std::uint8_t* bytesOf(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

char32_t valid(UChar32 character) {
    return character < 0 ? U'\uFFFD' : static_cast<char32_t>(character);
}

bool isIn(char32_t character, std::uint32_t mask) {
    return (U_GET_GC_MASK(static_cast<UChar32>(character)) & mask) != 0;
}

}  // namespace

char32_t characterAt(std::string_view text, std::size_t position) {
    if (position >= text.size()) return 0;
    UChar32 character = 0;
    U8_NEXT(bytesOf(text), position, text.size(), character);
    return valid(character);
}

char32_t characterBefore(std::string_view text, std::size_t position) {
    if (position == 0) return 0;
    auto at = static_cast<std::int32_t>(position);
    UChar32 character = 0;
    U8_PREV(bytesOf(text), 0, at, character);
    return valid(character);
}

std::size_t nextPosition(std::string_view text, std::size_t position) {
    if (position < text.size()) U8_FWD_1(bytesOf(text), position, text.size());
    return position;
}

std::size_t previousPosition(std::string_view text, std::size_t position) {
    if (position == 0) return 0;
    auto at = static_cast<std::int32_t>(position);
    U8_BACK_1(bytesOf(text), 0, at);
    return static_cast<std::size_t>(at);
}

bool isLetter(char32_t character) {
    return isIn(character, U_GC_L_MASK | U_GC_M_MASK);
}

bool isDigit(char32_t character) {
    return isIn(character, U_GC_N_MASK);
}

bool isUpperCase(char32_t character) {
    return isIn(character, U_GC_LU_MASK | U_GC_LT_MASK);
}

bool isWordCharacter(char32_t character) {
    return character == U'_' || isIn(character, U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
}

bool isBlank(char32_t character) {
    return character == 0 || u_isUWhiteSpace(static_cast<UChar32>(character)) != 0;
}

bool isPunctuation(char32_t character) {
    return isIn(character, U_GC_P_MASK | U_GC_S_MASK);
}

}  // namespace corvel::text
