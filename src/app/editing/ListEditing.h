#pragma once

#include "app/editing/TextEdit.h"

#include <optional>
#include <string_view>

namespace corvel::editing {

/// Enter in a list, a task list or a quotation: the next line goes on with it, the items that
/// follow count on; on an empty item it ends. None where Enter is an ordinary line end. The excerpt
/// should reach to the end of the list.
std::optional<TextEdit> lineEnded(std::string_view text, const Selection& selection);

enum class Depth { deeper, shallower };

/// Tab and Shift+Tab in lists: the selected items move below the item before them, or out of it.
/// An edit without effect when they can go no further, none when the selection starts in no list.
/// The excerpt should reach back to the items around.
std::optional<TextEdit> indented(std::string_view text, const Selection& selection, Depth depth);

}  // namespace corvel::editing
