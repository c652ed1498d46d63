#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvel::editing {

/// What a very long line is shown in pieces by: a paragraph separator, which text views end a line
/// at and which a note's own text hardly ever has.
inline constexpr std::string_view kSoftBreak = "\u2029";
/// In bytes; longer ones are laid out too slowly to be typed in. A word here is all between spaces:
/// wrapping inside it is the slowest.
inline constexpr std::size_t kLongestLine = 10'000;
inline constexpr std::size_t kLongestWord = 2000;

/// `text` (UTF-8) with every line that is too long, or has a word that is, in pieces of at most
/// 4000 bytes. They end behind a space where there is one, and are shorter where there is none.
/// None when there is no such line, or when the text has paragraph separators of its own, which
/// could not be told from ours.
std::optional<std::string> withSoftBreaks(std::string_view text);

/// The text itself.
std::string withoutSoftBreaks(std::string text);

}  // namespace corvel::editing
