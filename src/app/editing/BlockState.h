#pragma once

#include "library/MarkdownFence.h"

#include <cstdint>
#include <string_view>

namespace corvel::editing {

/// What a line starts in, of the things that reach over lines.
struct BlockState {
    enum class Kind : std::uint8_t { text, frontMatter, fence, comment };

    Kind kind = Kind::text;
    char mark = 0;             ///< of the fence
    std::uint16_t length = 0;  ///< of the fence; of front matter: the lines read so far

    bool operator==(const BlockState&) const = default;

    /// The state of the first line of a note, given its first two lines.
    static BlockState atStart(std::string_view first, std::string_view second);
    /// The state behind `line`, which starts in this one. The start of a very long line will do.
    BlockState after(std::string_view line) const;
    MarkdownFence fence() const { return {mark, length}; }
};

}  // namespace corvel::editing
