#pragma once

#include "app/editing/TextEdit.h"

#include <string_view>
#include <vector>

namespace corvel::editing {

enum class Emphasis { bold, italic, strikethrough };

/// A marked run of words: "**" or "*" (or the underscores), "~~" at each end.
struct EmphasisSpan {
    Emphasis kind = Emphasis::bold;
    TextRange open;   ///< the mark before
    TextRange close;  ///< the mark behind

    TextRange content() const { return {open.end, close.begin}; }
};

/// The marked runs of one line, in the order in which they close; code spans hold none.
std::vector<EmphasisSpan> emphasisSpansIn(std::string_view line);

}  // namespace corvel::editing
