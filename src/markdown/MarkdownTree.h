#pragma once

#include "markdown/MarkdownArena.h"

#include <cmark-gfm/node.h>

#include <string>
#include <string_view>

namespace corvel {

/// The parsed form of one Markdown text, with tables, strikethrough and task lists.
class MarkdownTree {
public:
    /// Invalid UTF-8 and NUL bytes are read as U+FFFD.
    explicit MarkdownTree(std::string_view markdown);

    cmark_node* root() const { return m_root; }

    static bool isTaskItem(const cmark_node* item);

private:
    MarkdownArena m_arena;  // holds every node: must outlive the root
    cmark_node* m_root;
};

inline std::string_view viewOf(const cmark_chunk& chunk) {
    return {reinterpret_cast<const char*>(chunk.data), static_cast<std::size_t>(chunk.len)};
}

/// The text of the nodes below `node`: code without its marks, breaks as white space, no HTML.
std::string plainTextOf(const cmark_node* node);

}  // namespace corvel
