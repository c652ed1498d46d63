#pragma once

#include "markdown/MarkdownTree.h"

#include <string>
#include <string_view>

namespace corvel {

/// Writes the HTML of one tree, in one walk without recursion: nesting costs no stack.
class BodyRenderer {
public:
    explicit BodyRenderer(const MarkdownTree& tree) : m_tree(tree) {}

    /// `sizeHint`: bytes of the Markdown text.
    std::string render(std::size_t sizeHint);

private:
    void enter(const cmark_node* node);
    void enterExtended(const cmark_node* node);
    const cmark_node* leaveToNext(const cmark_node* node);
    void leave(const cmark_node* node);
    void leaveExtended(const cmark_node* node);

    void openHeading(const cmark_node* node);
    void openList(const cmark_node* node);
    void openItem(const cmark_node* node);
    void openLink(const cmark_node* node);
    void writeCodeBlock(const cmark_node* node);
    void writeImage(const cmark_node* node);
    void writeText(std::string_view text);

    const MarkdownTree& m_tree;
    std::string m_output;
    bool m_insideLink = false;
};

}  // namespace corvel
