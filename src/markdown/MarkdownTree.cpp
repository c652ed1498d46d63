#include "markdown/MarkdownTree.h"

#include "markdown/TaskBoxes.h"
#include "platform/Ascii.h"
#include "platform/Handle.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm/parser.h>
#include <glib.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <string>

namespace corvel {

namespace {

struct Extensions {
    cmark_syntax_extension* table;
    cmark_syntax_extension* strikethrough;
    cmark_syntax_extension* taskList;
};

const Extensions& extensions() {
    static const Extensions found = [] {
        cmark_gfm_core_extensions_ensure_registered();
        return Extensions{cmark_find_syntax_extension("table"),
                          cmark_find_syntax_extension("strikethrough"),
                          cmark_find_syntax_extension("tasklist")};
    }();
    return found;
}

cmark_node* parse(std::string_view markdown) {
    // Never freed one by one: parser and nodes go with the arena.
    cmark_parser* parser = cmark_parser_new_with_mem(CMARK_OPT_DEFAULT, MarkdownArena::allocator());
    const Extensions& wanted = extensions();
    for (cmark_syntax_extension* extension :
         {wanted.table, wanted.strikethrough, wanted.taskList}) {
        cmark_parser_attach_syntax_extension(parser, extension);
    }
    cmark_parser_feed(parser, markdown.data(), markdown.size());
    cmark_node* root = cmark_parser_finish(parser);
    correctTaskBoxes(root, markdown);
    return root;
}

// A NUL is left to the parser, which reads it as U+FFFD.
bool isClean(std::string_view markdown) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(markdown.data());
    for (std::size_t position = ascii::runLength(markdown); position < markdown.size();) {
        UChar32 character = 0;
        U8_NEXT(bytes, position, markdown.size(), character);
        if (character < 0) return false;
        if (character < 0x80) position += ascii::runLength(markdown.substr(position));
    }
    return true;
}

cmark_node* parseRepaired(std::string_view markdown) {
    if (markdown.empty() || isClean(markdown)) return parse(markdown);
    const Handle<char, g_free> repaired{
        g_utf8_make_valid(markdown.data(), static_cast<gssize>(markdown.size()))};
    return parse(repaired.get());
}

}  // namespace

MarkdownTree::MarkdownTree(std::string_view markdown) : m_root(parseRepaired(markdown)) {}

bool MarkdownTree::isTaskItem(const cmark_node* item) {
    return item->extension != nullptr && item->extension == extensions().taskList;
}

namespace {

void appendPlainText(std::string& text, const cmark_node* node) {
    switch (node->type) {
        case CMARK_NODE_TEXT:
        case CMARK_NODE_CODE:
            text += viewOf(node->as.literal);
            break;
        case CMARK_NODE_SOFTBREAK:
        case CMARK_NODE_LINEBREAK:
            text += ' ';
            break;
        default:
            break;
    }
}

}  // namespace

std::string plainTextOf(const cmark_node* node) {
    std::string text;
    const cmark_node* inner = node->first_child;
    while (inner != nullptr) {
        appendPlainText(text, inner);
        const cmark_node* next = inner->first_child;
        for (; next == nullptr && inner != node; inner = inner->parent)
            next = inner->next;
        inner = next;
    }
    return text;
}

}  // namespace corvel
