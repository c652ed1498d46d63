#pragma once

#include "app/editing/BlockState.h"
#include "library/MarkdownCode.h"

#include <string_view>
#include <vector>

namespace corvel::editing {

/// The words of a line whose spelling is worth a look, in bytes of the line. Left out are code,
/// addresses, tags, HTML, front matter, words with digits or underscores, and names with
/// a capital inside (acronyms, "OpenType").
std::vector<TextRange> spellSpansIn(std::string_view line, const BlockState& startsIn);

}  // namespace corvel::editing
