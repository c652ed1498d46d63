#pragma once

#include "app/editing/TextEdit.h"

#include <optional>
#include <string>

namespace corvel {

/// Text with its selection drawn in: "|" is the cursor, "^" the other end of a selection.
inline editing::Excerpt marked(std::string text) {
    const auto take = [&text](char mark) {
        const auto at = text.find(mark);
        if (at != text.npos) text.erase(at, 1);
        return at;
    };
    auto cursor = text.find('|');
    auto anchor = text.find('^');
    if (anchor == text.npos) {
        take('|');
        return {text, editing::Selection::at(cursor)};
    }
    (anchor < cursor ? cursor : anchor) -= 1;
    take('|');
    take('^');
    return {text, {anchor, cursor}};
}

inline std::string drawn(std::string text, const editing::Selection& selection) {
    if (selection.isEmpty()) return text.insert(selection.cursor, "|");
    const bool isForward = selection.anchor < selection.cursor;
    text.insert(selection.end(), isForward ? "|" : "^");
    return text.insert(selection.begin(), isForward ? "^" : "|");
}

/// The text after `edit`, drawn; "none" when there is no edit.
inline std::string after(const editing::Excerpt& excerpt,
                         const std::optional<editing::TextEdit>& edit) {
    return edit ? drawn(edit->appliedTo(excerpt.text), edit->selection) : "none";
}

}  // namespace corvel
