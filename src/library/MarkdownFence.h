#pragma once

#include <cstddef>
#include <string_view>

namespace corvel {

/// The opening or closing line of a code block: three marks or more.
struct MarkdownFence {
    char mark = 0;
    std::size_t length = 0;

    bool operator==(const MarkdownFence&) const = default;

    /// `line` without what may stand before a fence: indentation, quotation marks, the marks of
    /// list items.
    static std::string_view withoutBlockMarks(std::string_view line);
    /// The fence that `line` opens outside a code block; of length zero when it opens none.
    static MarkdownFence openedBy(std::string_view line);
    bool isClosedBy(std::string_view line) const;
};

}  // namespace corvel
