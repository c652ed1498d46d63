#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace corvel {

/// Markdown that arrives in pieces, cut into what is certain to stay as it is and what is still
/// open. Blocks that ended are rendered once and let alone; only the open end is rendered again, so
/// that a piece costs the same in a long reply as in a short one.
///
/// The parts, rendered one by one, make the page that the whole makes, but for what reaches across
/// blocks (link definitions). Where it is not clear that a block has ended it counts as open.
class ReplyBlocks {
public:
    void append(std::string_view piece);

    /// What has ended since the last call, at most about `limit` bytes of it; empty when nothing
    /// has.
    std::string takeEnded(std::size_t limit);
    /// Whether that would give something.
    bool hasEnded() const { return !m_ends.empty(); }
    /// What may still change, behind all that has ended.
    std::string_view open() const;

private:
    void readLine(std::string_view line, std::size_t start);
    void readFence(std::string_view line);

    std::string m_text;              // what was not taken yet
    std::deque<std::size_t> m_ends;  // where blocks ended in it
    std::size_t m_read = 0;          // start of the first line that was not read
    char m_fence = 0;                // the mark of the open code fence
    std::size_t m_fenceLength = 0;
    bool m_isAfterBlank = false;
    bool m_isList = false;   // the open block has a list in it
    bool m_isStuck = false;  // raw HTML: blank lines say nothing from here on
};

}  // namespace corvel
