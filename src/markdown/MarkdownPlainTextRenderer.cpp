#include "markdown/MarkdownPlainTextRenderer.h"

#include "markdown/HtmlWords.h"
#include "platform/Handle.h"
#include "platform/Text.h"

#include <algorithm>
#include <utility>

// Exported by the extension library, but declared in none of the headers it installs.
extern "C" {
extern cmark_node_type CMARK_NODE_TABLE;
extern cmark_node_type CMARK_NODE_TABLE_ROW;
extern cmark_node_type CMARK_NODE_TABLE_CELL;
}

namespace corvel {

namespace {

constexpr std::size_t kQuoteIndent = 4;
constexpr std::string_view kRule = "──────────";

bool isOrdered(const cmark_node* list) {
    return list->as.list.list_type == CMARK_ORDERED_LIST;
}

/// Whether `node` is a block right in an item of a list without blank lines.
bool isInTightItem(const cmark_node* node) {
    const cmark_node* item = node->parent;
    return item != nullptr && item->type == CMARK_NODE_ITEM && item->parent->as.list.tight;
}

/// A text without the width that is asked of the image before it.
std::string_view withoutWidth(const cmark_node* node) {
    const std::string_view text = viewOf(node->as.literal);
    if (node->prev == nullptr || node->prev->type != CMARK_NODE_IMAGE) return text;
    const std::size_t mark = text.find_first_not_of(" \t");
    if (mark == std::string_view::npos || !text.substr(mark).starts_with("{width=")) return text;
    const std::size_t end = text.find('}', mark);
    return end == std::string_view::npos ? text : text.substr(end + 1);
}

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

}  // namespace

std::string MarkdownPlainTextRenderer::render(std::string_view markdown) {
    const MarkdownTree tree(markdown);
    const Handle<cmark_iter, cmark_iter_free> walk{cmark_iter_new(tree.root())};
    for (;;) {
        const cmark_event_type event = cmark_iter_next(walk.get());
        // The parser turns references to U+FFFE and U+FFFF into bytes that are no UTF-8.
        if (event == CMARK_EVENT_DONE) return text::repaired(m_lines.take());
        cmark_node* node = cmark_iter_get_node(walk.get());
        if (event == CMARK_EVENT_ENTER) {
            enter(node);
        } else {
            leave(node);
        }
    }
}

void MarkdownPlainTextRenderer::enter(cmark_node* node) {
    switch (node->type) {
        case CMARK_NODE_TEXT:
            m_inline += withoutWidth(node);
            return;
        case CMARK_NODE_CODE:
            m_inline += viewOf(node->as.literal);
            return;
        case CMARK_NODE_SOFTBREAK:
        case CMARK_NODE_LINEBREAK:
            m_inline += '\n';
            return;
        case CMARK_NODE_HTML_INLINE:
            return appendHtmlWords(m_inline, viewOf(node->as.literal));
        case CMARK_NODE_LINK:
            return m_linkStarts.push_back(m_inline.size());
        case CMARK_NODE_HEADING:
            return m_lines.setApart(true);
        case CMARK_NODE_LIST:
            if (isOrdered(node)) m_numbers.push_back(static_cast<unsigned>(node->as.list.start));
            return;
        case CMARK_NODE_ITEM:
            return openItem(node);
        case CMARK_NODE_BLOCK_QUOTE:
            m_lines.setApart(true);
            return m_lines.openLevel(kQuoteIndent);
        case CMARK_NODE_CODE_BLOCK:
            m_inline = viewOf(node->as.code.literal);
            if (m_inline.ends_with('\n')) m_inline.pop_back();
            return writeBlock(true);
        case CMARK_NODE_HTML_BLOCK:
            appendHtmlWords(m_inline, viewOf(node->as.literal));
            m_inline = trimmed(m_inline);
            if (!m_inline.empty()) writeBlock(true);
            return;
        case CMARK_NODE_THEMATIC_BREAK:
            m_inline = kRule;
            return writeBlock(true);
        default:
            return enterExtended(node);
    }
}

void MarkdownPlainTextRenderer::enterExtended(const cmark_node* node) {
    if (node->type == CMARK_NODE_TABLE) {
        m_table = {};
    } else if (node->type == CMARK_NODE_TABLE_ROW) {
        m_table.beginRow();
    }
}

void MarkdownPlainTextRenderer::leave(cmark_node* node) {
    switch (node->type) {
        case CMARK_NODE_PARAGRAPH:
            return writeBlock(!isInTightItem(node));
        case CMARK_NODE_HEADING:
            return writeBlock(true);
        case CMARK_NODE_LINK:
            return closeLink(node);
        case CMARK_NODE_LIST:
            if (isOrdered(node)) m_numbers.pop_back();
            return m_lines.setApart(!isInTightItem(node));
        case CMARK_NODE_ITEM:
            m_lines.closeLevel();
            return m_lines.setApart(!node->parent->as.list.tight);
        case CMARK_NODE_BLOCK_QUOTE:
            m_lines.closeLevel();
            return m_lines.setApart(true);
        default:
            return leaveExtended(node);
    }
}

void MarkdownPlainTextRenderer::leaveExtended(const cmark_node* node) {
    if (node->type == CMARK_NODE_TABLE_CELL) {
        m_table.addCell(std::exchange(m_inline, {}));
    } else if (node->type == CMARK_NODE_TABLE) {
        m_inline = m_table.text();
        m_lines.setApart(true);
        writeBlock(true);
    }
}

void MarkdownPlainTextRenderer::openItem(const cmark_node* item) {
    const bool isTask = MarkdownTree::isTaskItem(item);
    std::string marker;
    if (isOrdered(item->parent)) marker = std::to_string(m_numbers.back()++) + ". ";
    if (isTask) marker += item->as.list.checked ? "[x] " : "[ ] ";
    m_lines.openLevel(marker.empty() ? "• " : std::move(marker));
}

void MarkdownPlainTextRenderer::closeLink(const cmark_node* link) {
    const std::size_t start = m_linkStarts.back();
    m_linkStarts.pop_back();
    if (m_links == Links::textOnly) return;
    const std::string_view text = std::string_view(m_inline).substr(start);
    std::string_view address = viewOf(link->as.link.url);
    const bool isSame =
        address == text || (address.starts_with("mailto:") && address.substr(7) == text);
    if (isSame || address.empty() || address.starts_with('#')) return;
    m_inline.append(" (").append(address).append(")");
}

void MarkdownPlainTextRenderer::writeBlock(bool isFollowedApart) {
    m_lines.write(std::exchange(m_inline, {}));
    m_lines.setApart(isFollowedApart);
}

}  // namespace corvel
