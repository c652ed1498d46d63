#pragma once

#include <string>
#include <string_view>

namespace corvel::chapterrules {

// What a chapter of an EPUB 3 book may hold: the part of XHTML that notes use. Anything else is
// renamed to the nearest of these, unwrapped, or left out.

enum class Kind {
    phrasing,   ///< stands in a line, holds what stands in a line
    paragraph,  ///< a block that holds what stands in a line
    flow,       ///< a block that holds blocks
    list,       ///< holds items only
    item,
    table,
    tableSection,
    row,
    cell,
    rule,     ///< hr: an empty block
    unknown,  ///< its children take its place
    dropped,  ///< goes with everything in it
};

Kind kindOf(std::string_view element);

/// The element to use instead of `element`; `element` itself where it is fine.
std::string_view modernName(std::string_view element);

/// True for elements that never have content.
bool isVoid(std::string_view element);

/// True where `element` may carry `attribute` with `value`. Sources, links and ids are judged
/// elsewhere: what they mean depends on the rest of the chapter.
bool allowsAttribute(std::string_view element, std::string_view attribute, std::string_view value);

}  // namespace corvel::chapterrules
