#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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
/// stroke as their base letter ("Łódź" gives "lodz"). Each code point has its form whatever stands
/// beside it, so texts may be folded in pieces, and a text that contains another has a form that
/// contains the other's.
std::string foldedForSearch(std::string_view text);
/// Appends the form of `text` to `folded`.
void foldForSearch(std::string_view text, std::string& folded);

/// The longest start of `text` of at most `size` bytes that does not end inside a character.
std::string_view prefixByBytes(std::string_view text, std::size_t size);

/// Code points of well-formed text.
std::size_t characterCount(std::string_view text);

/// Word tokens by the word-break rules of UAX #29: segments with a letter, a digit, kana or an
/// ideograph.
std::int32_t wordCount(std::string_view text);

/// Where the segments of UAX #29 end, in bytes: words, and what stands between them, each by
/// itself. The last is the text's size; none of an empty text.
std::vector<std::size_t> wordBreaks(std::string_view text);

/// The first `count` user-perceived characters (extended grapheme clusters, UAX #29).
std::string_view prefixByGraphemes(std::string_view text, std::size_t count);

/// Order of two texts in a language ("pl", "en"): negative, zero or positive.
int collate(std::string_view a, std::string_view b, const char* language);

/// Windows-1250 as UTF-8; none when a byte has no meaning there.
std::optional<std::string> fromWindows1250(std::string_view bytes);

}  // namespace corvel::text
