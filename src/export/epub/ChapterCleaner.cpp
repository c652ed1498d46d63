#include "export/epub/ChapterCleaner.h"

#include "export/OutsideLink.h"
#include "export/epub/ChapterTable.h"
#include "export/epub/XmlNodes.h"

#include <glib.h>

#include <algorithm>

namespace corvel {

using chapterrules::isVoid;
using chapterrules::kindOf;
using chapterrules::modernName;

namespace {

// Readers and checkers recurse; no text is nested this deep on purpose.
constexpr std::size_t kDeepest = 120;
constexpr std::size_t kTableDepth = 8;

bool isTransparent(std::string_view element) {
    return element == "a" || element == "ins" || element == "del";
}

bool isHeading(const xmlNode* node) {
    const auto name = nameOf(node);
    return name.size() == 2 && name[0] == 'h' && name[1] >= '1' && name[1] <= '6';
}

bool isSoundId(std::string_view id) {
    return !id.empty() && id.find_first_of(" \t\n\r\f") == std::string_view::npos;
}

std::string decoded(const std::string& fragment) {
    const Handle<gchar, g_free> text(g_uri_unescape_string(fragment.c_str(), nullptr));
    return text ? text.get() : fragment;
}

}  // namespace

bool ChapterCleaner::clean() {
    m_places = {Place{Kind::flow}};
    xmlNode* parent = m_body;
    xmlNode* node = parent->children;
    while (node != nullptr || parent != m_body) {
        if (node == nullptr) {
            node = parent->next;
            parent = parent->parent;
            m_places.pop_back();
            continue;
        }
        const Step step = enter(node, m_places.back());
        node = step.node;
        if (!step.isSettled) continue;
        const bool goesDown = isElement(node) && node->children != nullptr;
        if (goesDown) {
            m_places.push_back(placeBelow(node, m_places.back()));
            parent = node;
        }
        node = goesDown ? node->children : node->next;
    }
    settleLinks();
    return m_isChanged;
}

ChapterCleaner::Place ChapterCleaner::placeBelow(const xmlNode* node, const Place& place) {
    const auto name = nameOf(node);
    const bool isInLink = place.isInLink || name == "a";
    switch (const Kind kind = kindOf(name)) {
        case Kind::phrasing:
            return {isTransparent(name) ? place.kind : Kind::phrasing, isInLink};
        case Kind::paragraph:
            return {Kind::phrasing, isInLink};
        case Kind::flow:
        case Kind::item:
        case Kind::cell:
            return {Kind::flow, isInLink};
        default:
            return {kind, isInLink};
    }
}

ChapterCleaner::Step ChapterCleaner::enter(xmlNode* node, const Place& place) {
    switch (node->type) {
        case XML_ELEMENT_NODE:
            return enterElement(node, place);
        case XML_TEXT_NODE:
        case XML_CDATA_SECTION_NODE:
            return enterText(node, place);
        case XML_COMMENT_NODE: {
            const std::string text = textContentOf(node);
            const bool isSound = text.find("--") == std::string::npos && !text.ends_with('-');
            return isSound ? Step{node, true} : remove(node);
        }
        default:
            return remove(node);
    }
}

ChapterCleaner::Step ChapterCleaner::enterText(xmlNode* node, const Place& place) {
    const bool holdsText = place.kind == Kind::flow || place.kind == Kind::phrasing;
    if (holdsText || isBlankText(node)) return {node, true};
    return place.kind == Kind::list ? wrap(node, "li") : remove(node);
}

ChapterCleaner::Step ChapterCleaner::enterElement(xmlNode* node, const Place& place) {
    const auto name = nameOf(node);
    if (modernName(name) != name) return rename(node, modernName(name));
    const Kind kind = kindOf(name);
    if (kind == Kind::dropped) return remove(node);
    if (kind == Kind::unknown || isTooDeep(kind)) return unwrap(node);
    if (!fits(node, kind, place)) return makeFit(node, kind, place);
    if (kind == Kind::table && !hasTableShape(node)) return rename(node, "div");
    if (place.isInLink && name == "a") return rename(node, "span");
    if (name == "img" && !isInBook(node)) return replaceImage(node);
    if (name == "input" && (place.isInLink || attributeOf(node, "type") != "checkbox")) {
        return remove(node);
    }
    settleAttributes(node);
    if (isVoid(name) && node->children != nullptr) return unwrap(node);
    return {node, true};
}

bool ChapterCleaner::isTooDeep(Kind kind) const {
    const bool isTablePart = kind == Kind::tableSection || kind == Kind::row || kind == Kind::cell;
    return m_places.size() > kDeepest - (kind == Kind::table ? kTableDepth : 0) && !isTablePart;
}

bool ChapterCleaner::fits(const xmlNode* node, Kind kind, const Place& place) {
    const bool isCaption = nameOf(node) == "caption";
    switch (place.kind) {
        case Kind::phrasing:
            return kind == Kind::phrasing;
        case Kind::list:
            return kind == Kind::item;
        case Kind::table:
            return kind == Kind::tableSection || kind == Kind::row || isCaption;
        case Kind::tableSection:
            return kind == Kind::row;
        case Kind::row:
            return kind == Kind::cell;
        default:
            return !isCaption && kind != Kind::item && kind != Kind::tableSection &&
                   kind != Kind::row && kind != Kind::cell;
    }
}

ChapterCleaner::Step ChapterCleaner::makeFit(xmlNode* node, Kind kind, const Place& place) {
    if (place.kind == Kind::list) return wrap(node, "li");
    if (place.kind == Kind::phrasing) return makeFitInLine(node, kind);
    if (nameOf(node) == "caption") return rename(node, "p");
    if (kind == Kind::item || kind == Kind::row || kind == Kind::cell) return rename(node, "div");
    return unwrap(node);
}

ChapterCleaner::Step ChapterCleaner::makeFitInLine(xmlNode* node, Kind kind) {
    if (kind == Kind::rule) return rename(node, "br");
    if (kind == Kind::list || kind == Kind::table || kind == Kind::tableSection) {
        return unwrap(node);
    }
    if (node->prev != nullptr) {
        xmlAddPrevSibling(node, xmlNewDocNode(node->doc, nullptr, xmlText("br"), nullptr));
    }
    return rename(node, nameOf(node) == "pre" ? "code" : "span");
}

bool ChapterCleaner::isInBook(const xmlNode* image) {
    return attributeOf(image, "src").value_or("").starts_with("data:image/");
}

// Pictures of the web are a link in the book, missing ones are what they would have shown.
ChapterCleaner::Step ChapterCleaner::replaceImage(xmlNode* image) {
    const auto source = outsideLink(attributeOf(image, "src").value_or(""));
    const std::string text = attributeOf(image, "alt").value_or("");
    const bool isWeb = source && !source->starts_with("mailto:");
    xmlNode* other = xmlNewDocNode(image->doc, nullptr, xmlText(isWeb ? "a" : "span"), nullptr);
    if (isWeb) setAttribute(other, "href", *source);
    const std::string shown = text.empty() && isWeb ? *source : text;
    xmlAddChild(other, xmlNewDocText(image->doc, xmlText(shown)));
    xmlReplaceNode(image, other);
    xmlFreeNode(image);
    m_isChanged = true;
    return {other, false};
}

void ChapterCleaner::settleAttributes(xmlNode* node) {
    for (xmlAttr* attribute = node->properties; attribute != nullptr;) {
        xmlAttr* next = attribute->next;
        if (!keepsAttribute(node, attribute)) {
            xmlRemoveProp(attribute);
            m_isChanged = true;
        }
        attribute = next;
    }
    settleId(node);
    if (nameOf(node) != "a") return;
    settleName(node);
    if (attributeOf(node, "href")) m_links.push_back(node);
}

bool ChapterCleaner::keepsAttribute(const xmlNode* node, const xmlAttr* attribute) {
    const std::string_view name = reinterpret_cast<const char*>(attribute->name);
    const auto element = nameOf(node);
    if (attribute->ns != nullptr) return false;
    if (name == "id") return true;
    if (element == "a" && (name == "href" || name == "name")) return true;
    if (element == "img" && name == "src") return true;
    const std::string value = attributeOf(node, name.data()).value_or("");
    return chapterrules::allowsAttribute(element, name, value);
}

// A heading keeps a target of its own; the first of equal ids is the one that links find.
void ChapterCleaner::settleId(xmlNode* node) {
    const auto id = attributeOf(node, "id");
    if (!id) return;
    if (isSoundId(*id) && m_ids.insert(*id).second) return;
    m_isChanged = true;
    if (isHeading(node)) {
        setHeadingId(node, freeId(isSoundId(*id) ? *id : "heading"));
    } else {
        xmlUnsetProp(node, xmlText("id"));
    }
}

std::string ChapterCleaner::freeId(const std::string& wanted) {
    int& number = m_lastNumbers.try_emplace(wanted, 1).first->second;
    std::string id;
    do {
        id = wanted + "-" + std::to_string(++number);
    } while (!m_ids.insert(id).second);
    return id;
}

void ChapterCleaner::setHeadingId(xmlNode* heading, const std::string& id) {
    const auto old = attributeOf(heading, "id");
    setAttribute(heading, "id", id);
    xmlNode* anchor = heading->children;
    if (anchor != nullptr && isElement(anchor, "a") && attributeOf(anchor, "name") == old) {
        setAttribute(anchor, "name", id);
    }
}

// Anchors of the older form are targets too.
void ChapterCleaner::settleName(xmlNode* anchor) {
    const auto name = attributeOf(anchor, "name");
    if (!name) return;
    if (!isSoundId(*name)) {
        xmlUnsetProp(anchor, xmlText("name"));
        m_isChanged = true;
    } else if (!attributeOf(anchor, "id") && m_ids.insert(*name).second) {
        setAttribute(anchor, "id", *name);
        m_isChanged = true;
    }
}

void ChapterCleaner::settleLinks() {
    for (xmlNode* link : m_links) {
        const std::string address = attributeOf(link, "href").value_or("");
        if (address == "#") continue;
        if (address.starts_with('#') && m_ids.contains(decoded(address.substr(1)))) continue;
        const auto usable = outsideLink(address);
        if (usable == address) continue;
        m_isChanged = true;
        if (usable) {
            setAttribute(link, "href", *usable);
        } else {
            xmlUnsetProp(link, xmlText("href"));
        }
    }
}

ChapterCleaner::Step ChapterCleaner::rename(xmlNode* node, std::string_view name) {
    xmlNodeSetName(node, xmlText(std::string(name)));
    m_isChanged = true;
    return {node, false};
}

ChapterCleaner::Step ChapterCleaner::unwrap(xmlNode* node) {
    xmlNode* first = node->children;
    xmlNode* next = node->next;
    while (xmlNode* child = node->children) {
        xmlUnlinkNode(child);
        // Not xmlAddPrevSibling: it merges texts, and would free the one the walk stands on.
        child->parent = node->parent;
        child->prev = node->prev;
        child->next = node;
        (node->prev != nullptr ? node->prev->next : node->parent->children) = child;
        node->prev = child;
    }
    remove(node);
    return {first != nullptr ? first : next, false};
}

ChapterCleaner::Step ChapterCleaner::remove(xmlNode* node) {
    xmlNode* next = node->next;
    xmlUnlinkNode(node);
    xmlFreeNode(node);
    m_isChanged = true;
    return {next, false};
}

ChapterCleaner::Step ChapterCleaner::wrap(xmlNode* node, const char* name) {
    xmlNode* wrapper = xmlNewDocNode(node->doc, nullptr, xmlText(name), nullptr);
    xmlReplaceNode(node, wrapper);
    xmlAddChild(wrapper, node);
    m_isChanged = true;
    return {wrapper, false};
}

}  // namespace corvel
