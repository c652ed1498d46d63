#include "markdown/BodyRenderer.h"

#include "markdown/BareUrl.h"
#include "markdown/HeadingSlug.h"
#include "markdown/HtmlEscape.h"

#include <cmark-gfm-core-extensions.h>

#include <charconv>

// Exported by the extension library, but declared in none of the headers it installs.
extern "C" {
extern cmark_node_type CMARK_NODE_TABLE;
extern cmark_node_type CMARK_NODE_TABLE_ROW;
extern cmark_node_type CMARK_NODE_TABLE_CELL;
extern cmark_node_type CMARK_NODE_STRIKETHROUGH;
}

namespace corvel {

namespace {

// A paragraph right in a list item is written without its tags, in tight and loose lists alike.
bool isBareParagraph(const cmark_node* paragraph) {
    return paragraph->parent != nullptr && paragraph->parent->type == CMARK_NODE_ITEM;
}

bool isHeadCell(const cmark_node* cell) {
    return cmark_gfm_extensions_get_table_row_is_header(cell->parent) != 0;
}

bool isOrdered(const cmark_node* list) {
    return list->as.list.list_type == CMARK_ORDERED_LIST;
}

void appendNumber(std::string& output, unsigned number) {
    char digits[16];
    const auto result = std::to_chars(std::begin(digits), std::end(digits), number);
    output.append(digits, result.ptr);
}

}  // namespace

std::string BodyRenderer::render(std::size_t sizeHint) {
    m_output.reserve(sizeHint + sizeHint / 4 + 64);
    const cmark_node* node = m_tree.root();
    while (node != nullptr) {
        enter(node);
        // What is in an image stands in its alternative text.
        const bool isEntered = node->type != CMARK_NODE_IMAGE && node->first_child != nullptr;
        node = isEntered ? node->first_child : leaveToNext(node);
    }
    return std::move(m_output);
}

// Leaves the node and all that end with it.
const cmark_node* BodyRenderer::leaveToNext(const cmark_node* node) {
    for (; node != nullptr; node = node->parent) {
        if (node->type != CMARK_NODE_TEXT) leave(node);
        if (node->next != nullptr) return node->next;
    }
    return nullptr;
}

void BodyRenderer::enter(const cmark_node* node) {
    switch (node->type) {
        case CMARK_NODE_TEXT:
            return writeText(viewOf(node->as.literal));
        case CMARK_NODE_SOFTBREAK:
        case CMARK_NODE_LINEBREAK:
            m_output += "<br>\n";
            return;
        case CMARK_NODE_PARAGRAPH:
            if (!isBareParagraph(node)) m_output += "<p>";
            return;
        case CMARK_NODE_STRONG:
            m_output += "<strong>";
            return;
        case CMARK_NODE_EMPH:
            m_output += "<em>";
            return;
        case CMARK_NODE_CODE:
            m_output += "<code>";
            appendEscaped(m_output, viewOf(node->as.literal));
            m_output += "</code>";
            return;
        case CMARK_NODE_LINK:
            return openLink(node);
        case CMARK_NODE_IMAGE:
            return writeImage(node);
        case CMARK_NODE_HTML_INLINE:
        case CMARK_NODE_HTML_BLOCK:
            m_output += viewOf(node->as.literal);
            return;
        case CMARK_NODE_HEADING:
            return openHeading(node);
        case CMARK_NODE_LIST:
            return openList(node);
        case CMARK_NODE_ITEM:
            return openItem(node);
        case CMARK_NODE_CODE_BLOCK:
            return writeCodeBlock(node);
        case CMARK_NODE_BLOCK_QUOTE:
            m_output += "<blockquote>\n";
            return;
        case CMARK_NODE_THEMATIC_BREAK:
            m_output += "<hr>\n";
            return;
        default:
            return enterExtended(node);
    }
}

void BodyRenderer::enterExtended(const cmark_node* node) {
    if (node->type == CMARK_NODE_TABLE_CELL) {
        m_output += isHeadCell(node) ? "<th>" : "<td>";
    } else if (node->type == CMARK_NODE_TABLE_ROW) {
        m_output += "<tr>\n";
    } else if (node->type == CMARK_NODE_TABLE) {
        m_output += "<table>\n<thead>\n";
    } else if (node->type == CMARK_NODE_STRIKETHROUGH) {
        m_output += "<del>";
    }
}

void BodyRenderer::leave(const cmark_node* node) {
    switch (node->type) {
        case CMARK_NODE_PARAGRAPH:
            if (!isBareParagraph(node)) m_output += "</p>\n";
            return;
        case CMARK_NODE_STRONG:
            m_output += "</strong>";
            return;
        case CMARK_NODE_EMPH:
            m_output += "</em>";
            return;
        case CMARK_NODE_LINK:
            m_insideLink = false;
            m_output += "</a>";
            return;
        case CMARK_NODE_HEADING:
            m_output += "</h";
            appendNumber(m_output, static_cast<unsigned>(node->as.heading.level));
            m_output += ">\n";
            return;
        case CMARK_NODE_LIST:
            m_output += isOrdered(node) ? "</ol>\n" : "</ul>\n";
            return;
        case CMARK_NODE_ITEM:
            m_output += "</li>\n";
            return;
        case CMARK_NODE_BLOCK_QUOTE:
            m_output += "</blockquote>\n";
            return;
        default:
            return leaveExtended(node);
    }
}

void BodyRenderer::leaveExtended(const cmark_node* node) {
    if (node->type == CMARK_NODE_TABLE_CELL) {
        m_output += isHeadCell(node) ? "</th>\n" : "</td>\n";
    } else if (node->type == CMARK_NODE_TABLE_ROW) {
        m_output += "</tr>\n";
        // The head row is the first: the body opens right after it.
        if (node->prev == nullptr) m_output += "</thead>\n<tbody>\n";
    } else if (node->type == CMARK_NODE_TABLE) {
        m_output += "</tbody>\n</table>\n";
    } else if (node->type == CMARK_NODE_STRIKETHROUGH) {
        m_output += "</del>";
    }
}

void BodyRenderer::openHeading(const cmark_node* node) {
    const std::string slug = headingSlug(plainTextOf(node));
    m_output += "<h";
    appendNumber(m_output, static_cast<unsigned>(node->as.heading.level));
    m_output.append(" id=\"").append(slug).append("\"><a name=\"").append(slug).append("\"></a>");
}

void BodyRenderer::openList(const cmark_node* node) {
    if (!isOrdered(node)) {
        m_output += "<ul>\n";
        return;
    }
    m_output += "<ol start=\"";
    appendNumber(m_output, static_cast<unsigned>(node->as.list.start));
    m_output += "\">\n";
}

void BodyRenderer::openItem(const cmark_node* node) {
    if (isOrdered(node->parent) || !MarkdownTree::isTaskItem(node)) {
        m_output += "<li>";
        return;
    }
    m_output += "<li class=\"task-list-item\"><input type=\"checkbox\" disabled";
    if (node->as.list.checked) m_output += " checked";
    m_output += "> ";
}

void BodyRenderer::openLink(const cmark_node* node) {
    const std::string_view destination = viewOf(node->as.link.url);
    m_output += "<a href=\"";
    appendEscaped(m_output, destination.empty() ? "#" : destination);
    m_output += "\">";
    m_insideLink = true;
}

void BodyRenderer::writeCodeBlock(const cmark_node* node) {
    const std::string_view language = viewOf(node->as.code.info);
    if (language.empty()) {
        m_output += "<pre><code>";
    } else {
        m_output.append("<pre><code class=\"language-").append(language).append("\">");
    }
    appendEscaped(m_output, viewOf(node->as.code.literal));
    m_output += "</code></pre>\n";
}

void BodyRenderer::writeImage(const cmark_node* node) {
    m_output.append("<img src=\"").append(viewOf(node->as.link.url)).append("\" alt=\"");
    appendEscaped(m_output, plainTextOf(node));
    m_output += "\">";
}

void BodyRenderer::writeText(std::string_view text) {
    std::size_t written = 0;
    while (!m_insideLink) {
        const auto found = findBareUrl(text, written);
        if (!found) break;
        const std::string_view url = text.substr(found->begin, found->end - found->begin);
        appendEscaped(m_output, text.substr(written, found->begin - written));
        m_output += "<a href=\"";
        appendEscaped(m_output, url);
        m_output += "\">";
        appendEscaped(m_output, url);
        m_output += "</a>";
        written = found->end;
    }
    appendEscaped(m_output, text.substr(written));
}

}  // namespace corvel
