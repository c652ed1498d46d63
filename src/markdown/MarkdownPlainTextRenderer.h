#pragma once

#include "markdown/MarkdownTree.h"
#include "markdown/PlainTextLines.h"
#include "markdown/PlainTextTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Writes a note as text without marks: headings and paragraphs apart from each other, lists with
/// bullets and numbers, quotes set in, code as it stands, tables in columns, images as their
/// alternative text. One walk without recursion: nesting costs no stack.
class MarkdownPlainTextRenderer {
public:
    enum class Links {
        textOnly,
        withAddress  ///< followed by the address in parentheses where it differs from the text
    };

    explicit MarkdownPlainTextRenderer(Links links = Links::textOnly) : m_links(links) {}

    /// Ends in a line feed unless it is empty. Time is that of parsing: see MarkdownRisk.h.
    std::string render(std::string_view markdown);

private:
    void enter(cmark_node* node);
    void enterExtended(const cmark_node* node);
    void leave(cmark_node* node);
    void leaveExtended(const cmark_node* node);
    void openItem(const cmark_node* item);
    void closeLink(const cmark_node* link);
    void writeBlock(bool isFollowedApart);

    Links m_links;
    PlainTextLines m_lines;
    PlainTextTable m_table;
    std::string m_inline;                   // of the block that is open
    std::vector<std::size_t> m_linkStarts;  // in m_inline
    std::vector<unsigned> m_numbers;        // of the next item of each open ordered list
};

}  // namespace corvel
