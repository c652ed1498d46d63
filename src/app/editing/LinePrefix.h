#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvel::editing {

/// What stands before the words of a line: quotation marks, indentation, the mark of a list item,
/// the box of a task. Each offset is where that part ends and the next begins.
struct LinePrefix {
    std::size_t quoteEnd = 0;
    std::size_t indentEnd = 0;
    std::size_t markEnd =
        0;                ///< with the blanks behind the mark; `indentEnd` when there is no mark
    std::size_t end = 0;  ///< with the box; `markEnd` when there is no box
    int number = -1;      ///< of an ordered item
    char mark = 0;        ///< '-', '*', '+', '.' or ')'; zero when this is no list item

    bool isItem() const { return mark != 0; }
    bool isOrdered() const { return number >= 0; }
    bool isTask() const { return end > markEnd; }
    bool isQuote() const { return quoteEnd > 0; }
    std::size_t indent() const { return indentEnd - quoteEnd; }
    /// Columns from the quotation's edge to the words: where a nested item stands.
    std::size_t contentColumn() const { return markEnd - quoteEnd; }

    static LinePrefix of(std::string_view line);
    /// The mark of an ordered item with another number: "12. ".
    std::string markText(std::string_view line, int otherNumber) const;
};

}  // namespace corvel::editing
