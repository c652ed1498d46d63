#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace corvel::text {

// Unicode work on UTF-8 text, done by ICU. Invalid bytes count as U+FFFD unless said otherwise.

bool isValidUtf8(std::string_view text);

/// `text` with every invalid sequence replaced by U+FFFD and every NUL byte by U+2400: what the
/// store and the text views can hold.
std::string repaired(std::string_view text);

/// Lower case by the root locale's full mapping.
std::string lowercased(std::string_view text);

/// NFD with combining marks dropped, recomposed: "ą" gives "a", "é" gives "e"; "ł" stays.
std::string withoutDiacritics(std::string_view text);

/// The form in which search compares: NFD, combining marks dropped, case-folded, letters with a
/// stroke as their base letter ("Łódź" gives "lodz"). Equal forms match; a form that contains
/// another's contains it.
std::string foldedForSearch(std::string_view text);

/// Word tokens by the word-break rules of UAX #29: segments with a letter, a digit, kana or an
/// ideograph.
std::int32_t wordCount(std::string_view text);

/// The first `count` user-perceived characters (extended grapheme clusters, UAX #29).
std::string_view prefixByGraphemes(std::string_view text, std::size_t count);

/// Order of two texts in a language ("pl", "en"): negative, zero or positive.
int collate(std::string_view a, std::string_view b, const char* language);

/// `text` in UTF-8 when it is Windows-1250; false when a byte has no meaning there.
bool fromWindows1250(std::string_view bytes, std::string& text);

}  // namespace corvel::text
