#pragma once

#include "export/epub/ChapterRules.h"

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvel {

/// Makes a chapter's tree valid for a book: known elements where they may stand, attributes with
/// sound values, ids that are there once, links that lead somewhere, images that are in the book.
/// One walk without recursion; what is too deep to be read anywhere is flattened.
class ChapterCleaner {
public:
    /// `body`: the element whose children are the chapter.
    explicit ChapterCleaner(xmlNode* body) : m_body(body) {}

    /// True when something had to be changed.
    bool clean();

private:
    using Kind = chapterrules::Kind;

    /// What may stand at a place: the kind of what holds it, with `item`, `cell` and blocks of
    /// blocks all taken as `flow`, and lines as `phrasing`.
    struct Place {
        Kind kind;
        bool isInLink = false;
    };
    /// Where the walk goes on: at `node`, which is settled, or is to be looked at (none: the
    /// siblings are through).
    struct Step {
        xmlNode* node;
        bool isSettled;
    };

    Step enter(xmlNode* node, const Place& place);
    Step enterText(xmlNode* node, const Place& place);
    Step enterElement(xmlNode* node, const Place& place);
    Step makeFit(xmlNode* node, Kind kind, const Place& place);
    Step makeFitInLine(xmlNode* node, Kind kind);
    bool isTooDeep(Kind kind) const;
    static bool fits(const xmlNode* node, Kind kind, const Place& place);
    static Place placeBelow(const xmlNode* node, const Place& place);
    static bool isInBook(const xmlNode* image);
    Step replaceImage(xmlNode* image);

    void settleAttributes(xmlNode* node);
    static bool keepsAttribute(const xmlNode* node, const xmlAttr* attribute);
    void settleId(xmlNode* node);
    void settleName(xmlNode* anchor);
    void settleLinks();
    std::string freeId(const std::string& wanted);
    static void setHeadingId(xmlNode* heading, const std::string& id);

    Step rename(xmlNode* node, std::string_view name);
    Step unwrap(xmlNode* node);
    Step remove(xmlNode* node);
    Step wrap(xmlNode* node, const char* name);

    xmlNode* m_body;
    bool m_isChanged = false;
    std::unordered_set<std::string> m_ids;
    std::unordered_map<std::string, int> m_lastNumbers;  // of the ids made from another
    std::vector<xmlNode*> m_links;
    std::vector<Place> m_places;  // of the walk, outermost first
};

}  // namespace corvel
