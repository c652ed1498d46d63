#include "export/epub/ChapterTable.h"

#include "export/epub/ChapterRules.h"
#include "export/epub/XmlNodes.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace corvel {

namespace {

using chapterrules::Kind;
using chapterrules::kindOf;

/// The elements in `node`; none when there is text between them.
std::optional<std::vector<const xmlNode*>> elementsOf(const xmlNode* node) {
    std::vector<const xmlNode*> elements;
    for (const xmlNode* child = node->children; child != nullptr; child = child->next) {
        if (isElement(child)) {
            if (kindOf(nameOf(child)) != Kind::dropped) elements.push_back(child);
        } else if (child->type != XML_COMMENT_NODE && !isBlankText(child)) {
            return std::nullopt;
        }
    }
    return elements;
}

bool holdsOnly(const xmlNode* node, Kind kind) {
    const auto elements = elementsOf(node);
    return elements && std::ranges::all_of(*elements, [kind](const xmlNode* child) {
               return kindOf(nameOf(child)) == kind;
           });
}

bool isRowOfCells(const xmlNode* row) {
    return kindOf(nameOf(row)) == Kind::row && holdsOnly(row, Kind::cell);
}

bool isSection(const xmlNode* node) {
    if (kindOf(nameOf(node)) != Kind::tableSection) return false;
    const auto rows = elementsOf(node);
    return rows && std::ranges::all_of(*rows, isRowOfCells);
}

}  // namespace

bool hasTableShape(const xmlNode* table) {
    const auto parts = elementsOf(table);
    if (!parts || parts->empty()) return false;
    auto part = parts->begin();
    if (nameOf(*part) == "caption") ++part;
    if (part == parts->end()) return false;
    if (std::all_of(part, parts->end(), isRowOfCells)) return true;
    if (nameOf(*part) == "thead" && isSection(*part)) ++part;
    while (part != parts->end() && nameOf(*part) == "tbody" && isSection(*part))
        ++part;
    if (part != parts->end() && nameOf(*part) == "tfoot" && isSection(*part)) ++part;
    return part == parts->end();
}

}  // namespace corvel
