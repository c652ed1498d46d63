#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvel {

/// A range of bytes of a text.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Fenced code blocks and code spans of Markdown, in order, each with its marks. Fences may stand
/// in quotations and lists; a span ends with its paragraph at the latest.
std::vector<TextRange> codeRangesIn(std::string_view markdown);

/// Whether one of the ranges, which are in order, holds `position`.
bool contains(const std::vector<TextRange>& ranges, std::size_t position);

}  // namespace corvel
