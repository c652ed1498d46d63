#pragma once

#include "app/editing/TextEdit.h"

#include <optional>
#include <string_view>

namespace corvel::editing {

/// Where the cursor stands: in code marks and quotation marks mean what they are.
enum class Place { text, code };

/// What typing `typed` (one character) makes of a line beyond the character itself: brackets and
/// quotation marks come in pairs, a closing one is typed over, a selection is wrapped and stays
/// selected. None when the character is just to be inserted.
std::optional<TextEdit> typed(std::string_view text,
                              const Selection& selection,
                              std::string_view character,
                              Place place);

/// What Backspace takes beyond one character: both of an empty pair.
std::optional<TextEdit> erased(std::string_view text, const Selection& selection);

}  // namespace corvel::editing
