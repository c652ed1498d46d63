#include "export/epub/ChapterMarkup.h"

#include "export/epub/ChapterCleaner.h"
#include "export/epub/EmbeddedData.h"
#include "export/epub/XmlNodes.h"
#include "export/epub/XmlText.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <libxml/xmlsave.h>

#include <algorithm>
#include <array>

namespace corvel {

namespace {

using XmlBuffer = Handle<xmlBuffer, xmlBufferFree>;

constexpr std::array<std::string_view, 13> kVoidElements{
    "area",  "base", "br",   "col",    "embed", "hr", "img",
    "input", "link", "meta", "source", "track", "wbr"};

constexpr int kQuietly = XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET;

bool isSpace(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

/// Length of a void element's name behind the "<" at `position`, or 0.
std::size_t voidNameAt(std::string_view html, std::size_t position) {
    for (const auto name : kVoidElements) {
        if (html.substr(position, name.size()) != name) continue;
        const auto next = html.substr(position + name.size(), 1);
        if (!next.empty() && (next[0] == '>' || isSpace(next[0]))) return name.size();
    }
    return 0;
}

XmlDocument parsedAsXml(const std::string& body) {
    const std::string page = "<body>" + body + "</body>";
    return XmlDocument(xmlReadMemory(page.data(), static_cast<int>(page.size()), nullptr, "UTF-8",
                                     kQuietly | XML_PARSE_HUGE));
}

XmlDocument parsedAsHtml(const std::string& body) {
    const std::string page = "<html><body>" + body + "</body></html>";
    return XmlDocument(htmlReadMemory(page.data(), static_cast<int>(page.size()), nullptr, "UTF-8",
                                      HTML_PARSE_RECOVER | kQuietly));
}

xmlNode* bodyOf(const XmlDocument& document) {
    xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root == nullptr || isElement(root, "body")) return root;
    for (xmlNode* child = root->children; child != nullptr; child = child->next) {
        if (isElement(child, "body")) return child;
    }
    return nullptr;
}

/// The next node of the tree below `top` in document order.
xmlNode* nextNode(const xmlNode* node, const xmlNode* top) {
    if (node->children != nullptr && isElement(node)) return node->children;
    while (node != top && node->next == nullptr)
        node = node->parent;
    return node == top ? nullptr : node->next;
}

std::string collapsed(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (!isSpace(character)) {
            result += character;
        } else if (!result.empty() && result.back() != ' ') {
            result += ' ';
        }
    }
    if (result.ends_with(' ')) result.pop_back();
    return result;
}

/// Headings of the note itself carry an anchor of the same name; those of raw HTML do not.
std::vector<TOCEntry> contentsOf(xmlNode* body) {
    std::vector<TOCEntry> contents;
    for (xmlNode* node = body->children; node != nullptr; node = nextNode(node, body)) {
        if (!isElement(node)) continue;
        const auto name = nameOf(node);
        if (name.size() != 2 || name[0] != 'h' || name[1] < '1' || name[1] > '6') continue;
        const auto id = attributeOf(node, "id");
        const xmlNode* anchor = node->children;
        if (!id || anchor == nullptr || !isElement(anchor, "a")) continue;
        if (attributeOf(anchor, "name") != id) continue;
        std::string title = collapsed(textContentOf(node));
        // A link in the contents must have a text.
        if (title.empty()) title = *id;
        contents.push_back({*id, std::move(title), name[1] - '0'});
    }
    return contents;
}

// Written with two tags also when empty: some readers take the page for HTML.
void fillEmptyElements(xmlNode* body) {
    for (xmlNode* node = body->children; node != nullptr; node = nextNode(node, body)) {
        if (!isElement(node) || node->children != nullptr) continue;
        if (chapterrules::isVoid(nameOf(node))) continue;
        xmlAddChild(node, xmlNewDocText(node->doc, xmlText("")));
    }
}

std::string written(xmlNode* body) {
    fillEmptyElements(body);
    const XmlBuffer buffer(xmlBufferCreate());
    const Handle<xmlSaveCtxt, xmlSaveClose> save(
        xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_NO_DECL | XML_SAVE_AS_XML));
    for (xmlNode* child = body->children; child != nullptr; child = child->next) {
        xmlSaveTree(save.get(), child);
    }
    xmlSaveFlush(save.get());
    return reinterpret_cast<const char*>(xmlBufferContent(buffer.get()));
}

}  // namespace

std::string withSelfClosedTags(const std::string& html) {
    const std::string_view text = html;
    std::string closed;
    closed.reserve(html.size() + html.size() / 32);
    std::size_t copied = 0;
    for (std::size_t open = text.find('<'); open != std::string_view::npos;
         open = text.find('<', open + 1)) {
        const std::size_t name = voidNameAt(text, open + 1);
        if (name == 0) continue;
        const std::size_t end = text.find('>', open + 1 + name);
        if (end == std::string_view::npos) break;
        if (text[end - 1] == '/') continue;
        closed.append(text, copied, end - copied).append("/");
        copied = end;
    }
    return closed.append(text, copied);
}

ChapterMarkup chapterMarkup(const std::string& html) {
    EmbeddedData data;
    const std::string body = data.takeOut(withoutForbiddenCharacters(withSelfClosedTags(html)));
    XmlDocument document = parsedAsXml(body);
    const bool isWellFormed = document != nullptr;
    if (!isWellFormed) document = parsedAsHtml(body);
    xmlNode* root = bodyOf(document);
    if (root == nullptr) return {};
    const bool isChanged = ChapterCleaner(root).clean();
    auto contents = contentsOf(root);
    return {data.putBack(isWellFormed && !isChanged ? body : written(root)), std::move(contents)};
}

}  // namespace corvel
