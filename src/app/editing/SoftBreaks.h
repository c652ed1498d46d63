#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvel::editing {

/// What a very long line is shown in pieces by: a paragraph separator, which text views end a line
/// at and which a note's own text hardly ever has.
inline constexpr std::string_view kSoftBreak = "\u2029";
/// In bytes; a longer line is laid out too slowly to be typed in.
inline constexpr std::size_t kLongestLine = 10'000;

/// `text` (UTF-8) with every line of more than `kLongestLine` bytes in pieces of at most 4000
/// bytes, which end behind a space where there is one. None when no line is as long, or when the
/// text has paragraph separators of its own, which could not be told from ours.
std::optional<std::string> withSoftBreaks(std::string_view text);

/// The text itself.
std::string withoutSoftBreaks(std::string text);

}  // namespace corvel::editing
