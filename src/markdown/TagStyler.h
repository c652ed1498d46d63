#pragma once

#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Writes one style into every start tag of one name: a new attribute, or more declarations at the
/// end of the one that is there. Tags are taken from the last to the first, each seeing what was
/// written behind it, so that tags within attribute values come out the same as by plain search
/// and insertion; the work stays linear because the text behind the current tag is kept as a list
/// of pieces with its nearest ">", style attribute and quote at hand.
class TagStyler {
public:
    TagStyler(std::string_view tag, std::string_view style);

    std::string apply(std::string html);

private:
    using Pieces = std::list<std::string_view>;
    struct StyleAttribute {
        bool exists = false;
        bool beforeTagEnd = false;      // within the attributes of a tag that begins here
        Pieces::iterator closingQuote;  // the end when the value is never closed
    };

    std::vector<std::size_t> findTags(std::string_view html) const;
    void styleTag(bool hasNoAttributes);
    void prepend(std::string_view segment);
    void prependAttribute(bool spaceFirst);
    void appendToValue();
    bool valueEndsWithSemicolon() const;

    std::string m_opening;      // "<" and the tag's name
    std::string m_quotedStyle;  // a quote and the style
    Pieces m_pieces;
    Pieces::iterator m_firstQuote;
    StyleAttribute m_firstStyle;
    bool m_hasTagEnd = false;
};

}  // namespace corvel
