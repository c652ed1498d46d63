#pragma once

#include <cstddef>
#include <string_view>

namespace corvel::text {

// The characters of UTF-8 text around a position, which lies between characters.

/// Zero at the end.
char32_t characterAt(std::string_view text, std::size_t position);
/// Zero at the start.
char32_t characterBefore(std::string_view text, std::size_t position);
std::size_t nextPosition(std::string_view text, std::size_t position);
std::size_t previousPosition(std::string_view text, std::size_t position);

bool isLetter(char32_t character);  ///< combining marks count as letters
bool isDigit(char32_t character);
bool isUpperCase(char32_t character);
/// Letters, digits, combining marks and the underscore.
bool isWordCharacter(char32_t character);
/// White space, and the zero that stands for an end.
bool isBlank(char32_t character);
bool isPunctuation(char32_t character);  ///< symbols included

}  // namespace corvel::text
