#pragma once

#include "library/MarkdownCode.h"

#include <string_view>
#include <vector>

namespace corvel::editing {

/// A run of text that is in both, or in one only. Both ranges are in bytes; that of the text it is
/// not in is empty and tells its place there.
struct DifferenceRun {
    enum class Kind { kept, removed, added };

    Kind kind = Kind::kept;
    TextRange before;
    TextRange after;
};

/// What makes one text (UTF-8) of another, in order and without gaps: kept and removed runs are the
/// old text, kept and added runs the new one. Where words were exchanged, what was removed comes
/// before what was added.
///
/// Compared by lines, then by words within changed lines; lines that have little in common are
/// exchanged whole. The work is bounded: two unlike texts of megabytes have a coarser answer.
std::vector<DifferenceRun> differencesOf(std::string_view before, std::string_view after);

}  // namespace corvel::editing
