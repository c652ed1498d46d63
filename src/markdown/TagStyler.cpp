#include "markdown/TagStyler.h"

#include "markdown/PatternSpace.h"

#include <glib.h>

#include <algorithm>
#include <iterator>

namespace corvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kStyle = "style=\"";

std::size_t afterOpening(std::string_view html, std::size_t begin, std::string_view opening) {
    const std::size_t next = begin + opening.size();
    if (next >= html.size()) return kNone;
    if (g_ascii_strncasecmp(html.data() + begin, opening.data(), opening.size()) != 0) return kNone;
    if (html[next] == '>') return next;
    const std::size_t space = spaceLengthAt(html, next);
    return space == 0 ? kNone : next + space;
}

}  // namespace

TagStyler::TagStyler(std::string_view tag, std::string_view style)
    : m_opening("<"), m_quotedStyle("\"") {
    m_opening += tag;
    m_quotedStyle += style;
}

// Where the styles go: at the ">" of a bare tag, behind the white space of another.
std::vector<std::size_t> TagStyler::findTags(std::string_view html) const {
    std::vector<std::size_t> places;
    for (std::size_t begin = html.find('<'); begin != kNone; begin = html.find('<', begin + 1)) {
        const std::size_t place = afterOpening(html, begin, m_opening);
        if (place != kNone) places.push_back(place);
    }
    return places;
}

std::string TagStyler::apply(std::string html) {
    const std::string_view text = html;
    const std::vector<std::size_t> places = findTags(text);
    if (places.empty()) return html;
    m_firstQuote = m_pieces.end();
    std::size_t end = text.size();
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        prepend(text.substr(*place, end - *place));
        styleTag(g_ascii_isalnum(text[*place - 1]));
        end = *place;
    }
    std::string output;
    output.reserve(text.size() + places.size() * (kStyle.size() + m_quotedStyle.size() + 1));
    output.append(text, 0, end);
    for (const std::string_view piece : m_pieces)
        output += piece;
    return output;
}

void TagStyler::styleTag(bool hasNoAttributes) {
    if (hasNoAttributes) {
        prependAttribute(true);
    } else if (!m_hasTagEnd) {
        return;
    } else if (!m_firstStyle.exists || !m_firstStyle.beforeTagEnd) {
        prependAttribute(false);
    } else if (m_firstStyle.closingQuote != m_pieces.end()) {
        appendToValue();
    }
}

// Puts `segment` before the pieces, cut where a later insertion may have to go.
void TagStyler::prepend(std::string_view segment) {
    const std::size_t tagEnd = segment.find('>');
    const std::size_t style = segment.find(kStyle);
    const std::size_t quote = segment.find('"');
    const std::size_t closing = style == kNone ? kNone : segment.find('"', style + kStyle.size());

    if (tagEnd != kNone) m_hasTagEnd = true;
    if (style != kNone) {
        m_firstStyle = {true, m_hasTagEnd && style < tagEnd, m_firstQuote};
    } else if (tagEnd != kNone) {
        m_firstStyle.beforeTagEnd = false;
    }
    // From the back to the front.
    std::size_t end = segment.size();
    for (const std::size_t cut : {closing, quote}) {
        if (cut == kNone || cut == end) continue;
        m_pieces.push_front(segment.substr(cut, end - cut));
        end = cut;
        if (cut == closing) m_firstStyle.closingQuote = m_pieces.begin();
        if (cut == quote) m_firstQuote = m_pieces.begin();
    }
    if (end > 0) m_pieces.push_front(segment.substr(0, end));
}

void TagStyler::prependAttribute(bool spaceFirst) {
    const std::string_view closing = "\" ";
    m_pieces.push_front(spaceFirst ? closing.substr(0, 1) : closing);
    m_firstStyle = {true, true, m_pieces.begin()};
    m_pieces.push_front(m_quotedStyle);
    m_firstQuote = m_pieces.begin();
    m_pieces.push_front(spaceFirst ? " style=" : "style=");
}

void TagStyler::appendToValue() {
    const auto quote = m_firstStyle.closingQuote;
    if (!valueEndsWithSemicolon()) m_pieces.insert(quote, ";");
    m_pieces.insert(quote, std::string_view(m_quotedStyle).substr(1));
}

// The piece before the closing quote is never empty: it ends with the value, or with the quote
// that opens an empty one.
bool TagStyler::valueEndsWithSemicolon() const {
    return std::prev(m_firstStyle.closingQuote)->back() == ';';
}

}  // namespace corvel
