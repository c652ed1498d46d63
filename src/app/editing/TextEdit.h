#pragma once

#include "library/MarkdownCode.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

/// What the editor does to Markdown as it is typed, as functions from text to text. Each is given
/// an excerpt of the note: whole lines around the selection. Every offset counts UTF-8 bytes from
/// the start of that excerpt and lies between characters.
namespace corvel::editing {

/// The cursor and the other end of what is selected.
struct Selection {
    std::size_t anchor = 0;
    std::size_t cursor = 0;

    static Selection at(std::size_t position) { return {position, position}; }
    std::size_t begin() const { return std::min(anchor, cursor); }
    std::size_t end() const { return std::max(anchor, cursor); }
    bool isEmpty() const { return anchor == cursor; }
    bool operator==(const Selection&) const = default;
};

/// One change: `range` becomes `replacement`, then `selection` (an offset in the changed excerpt)
/// is selected.
struct TextEdit {
    TextRange range;
    std::string replacement;
    Selection selection;

    /// The excerpt after the change.
    std::string appliedTo(std::string_view text) const {
        std::string changed(text);
        return changed.replace(range.begin, range.end - range.begin, replacement);
    }
};

/// Lines of an excerpt with a selection in them.
struct Excerpt {
    std::string text;
    Selection selection;
};

/// The line that holds `position`, without its "\n".
TextRange lineAt(std::string_view text, std::size_t position);

/// The word that holds or touches `position`; empty when there is none.
TextRange wordAt(std::string_view text, std::size_t position);

inline std::string_view slice(std::string_view text, const TextRange& range) {
    return text.substr(range.begin, range.end - range.begin);
}

}  // namespace corvel::editing
