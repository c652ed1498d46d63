#include "markdown/ImageSourceScanner.h"

#include <glib.h>

#include <algorithm>

namespace corvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr std::string_view kSpaces = " \t\n\r\f";

bool isSame(std::string_view text, std::string_view lowerCase) {
    return std::ranges::equal(text, lowerCase, {}, g_ascii_tolower);
}

}  // namespace

std::optional<TextSpan> ImageSourceScanner::next() {
    while (m_isInside || enterImage()) {
        const auto attribute = readAttribute();
        m_isInside = attribute.has_value();
        if (m_isInside && isSame(attribute->name, "src")) {
            m_isInside = false;  // a second one has no meaning
            return attribute->value;
        }
    }
    return std::nullopt;
}

bool ImageSourceScanner::enterImage() {
    constexpr std::string_view kTag = "<img";
    for (std::size_t begin = m_html.find('<', m_position); begin != kNone;
         begin = m_html.find('<', begin + 1)) {
        const std::size_t behind = begin + kTag.size();
        if (behind >= m_html.size()) break;
        if (!isSame(m_html.substr(begin, kTag.size()), kTag)) continue;
        if (kSpaces.find(m_html[behind]) == kNone && m_html[behind] != '/') continue;
        m_position = behind;
        return true;
    }
    m_position = m_html.size();
    return false;
}

// None at the end of the tag.
std::optional<ImageSourceScanner::Attribute> ImageSourceScanner::readAttribute() {
    m_position = m_html.find_first_not_of(" \t\n\r\f/", m_position);
    if (m_position == kNone) m_position = m_html.size();
    if (m_position == m_html.size() || m_html[m_position] == '>') return std::nullopt;
    // An equals sign at the start belongs to the name.
    const std::size_t end =
        std::min(m_html.find_first_of(" \t\n\r\f/>=", m_position + 1), m_html.size());
    Attribute attribute{m_html.substr(m_position, end - m_position), {end, end}};
    m_position = end;
    const std::size_t sign = m_html.find_first_not_of(kSpaces, end);
    if (sign == kNone || m_html[sign] != '=') return attribute;
    m_position = sign + 1;
    attribute.value = readValue();
    return attribute;
}

TextSpan ImageSourceScanner::readValue() {
    std::size_t begin = std::min(m_html.find_first_not_of(kSpaces, m_position), m_html.size());
    const char mark = begin < m_html.size() ? m_html[begin] : '>';
    const bool isQuoted = mark == '"' || mark == '\'';
    if (isQuoted) ++begin;
    const std::string_view ends = isQuoted ? m_html.substr(begin - 1, 1) : " \t\n\r\f>";
    const std::size_t end = std::min(m_html.find_first_of(ends, begin), m_html.size());
    m_position = std::min(end + (isQuoted ? 1 : 0), m_html.size());
    return {begin, end};
}

}  // namespace corvel
