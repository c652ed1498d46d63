#pragma once

#include "app/editing/TextEdit.h"

#include <optional>
#include <string_view>

namespace corvel::editing {

/// The selected lines become headings of the level after the first one's; after the sixth level
/// they are plain again.
TextEdit cycledHeading(std::string_view text, const Selection& selection);

/// The selected lines become tasks; when all of them are, they are plain lines again (numbered
/// items keep their number).
TextEdit toggledTasks(std::string_view text, const Selection& selection);

/// The selected lines become a code block; lines of one lose its fences.
TextEdit toggledCodeBlock(std::string_view text, const Selection& selection, bool isInFence);

/// The selection, or the word at the cursor, becomes the text of a link, or its address when it is
/// one; a link becomes plain text. `clipboard` is used when it is an address. None when the
/// selection reaches over paragraphs.
std::optional<TextEdit> toggledLink(std::string_view text,
                                    const Selection& selection,
                                    std::string_view clipboard);

}  // namespace corvel::editing
