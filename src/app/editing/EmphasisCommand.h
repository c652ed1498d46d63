#pragma once

#include "app/editing/EmphasisSpans.h"

#include <optional>

namespace corvel::editing {

/// Marks the selection, paragraph by paragraph, or takes its marks away when all of it has them.
/// Without a selection it is the word at the cursor, or an empty pair of marks to type into. None
/// when there is nothing to mark.
std::optional<TextEdit> toggledEmphasis(std::string_view text,
                                        const Selection& selection,
                                        Emphasis kind);

}  // namespace corvel::editing
