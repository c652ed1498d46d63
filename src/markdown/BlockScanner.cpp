#include "markdown/BlockScanner.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kNone = std::string_view::npos;
// A web view's parser flattens what is nested deeper than some hundred levels.
constexpr std::size_t kDeepest = 200;
constexpr std::string_view kSpaces = " \t\n\r";

bool isNameCharacter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= '0' && character <= '9');
}

bool isAttributeCharacter(char character) {
    return isNameCharacter(character) || character == '-' || character == '_';
}

}  // namespace

BlockScanner::Kind BlockScanner::kindOf(std::string_view name) {
    using Row = std::pair<std::string_view, Kind>;
    static constexpr std::array<Row, 42> kKinds{{
        {"a", Kind::inlined},        {"abbr", Kind::inlined},   {"b", Kind::inlined},
        {"blockquote", Kind::block}, {"br", Kind::empty},       {"cite", Kind::inlined},
        {"code", Kind::inlined},     {"del", Kind::inlined},    {"div", Kind::block},
        {"em", Kind::inlined},       {"h1", Kind::phrasesOnly}, {"h2", Kind::phrasesOnly},
        {"h3", Kind::phrasesOnly},   {"h4", Kind::phrasesOnly}, {"h5", Kind::phrasesOnly},
        {"h6", Kind::phrasesOnly},   {"hr", Kind::empty},       {"i", Kind::inlined},
        {"img", Kind::empty},        {"input", Kind::empty},    {"ins", Kind::inlined},
        {"kbd", Kind::inlined},      {"li", Kind::item},        {"mark", Kind::inlined},
        {"ol", Kind::list},          {"p", Kind::phrasesOnly},  {"pre", Kind::phrasesOnly},
        {"q", Kind::inlined},        {"s", Kind::inlined},      {"small", Kind::inlined},
        {"span", Kind::inlined},     {"strong", Kind::inlined}, {"sub", Kind::inlined},
        {"sup", Kind::inlined},      {"table", Kind::table},    {"tbody", Kind::rows},
        {"td", Kind::cell},          {"th", Kind::cell},        {"thead", Kind::rows},
        {"tr", Kind::row},           {"u", Kind::inlined},      {"ul", Kind::list},
    }};
    static_assert(std::ranges::is_sorted(kKinds, {}, &Row::first));
    const auto* const found = std::ranges::lower_bound(kKinds, name, {}, &Row::first);
    return found == kKinds.end() || found->first != name ? Kind::none : found->second;
}

bool BlockScanner::skipBlock() {
    const std::size_t start = m_position;
    const bool isBlock = readElement() && m_body.substr(m_position, 1) == "\n" &&
                         (m_position + 1 == m_body.size() || m_body[m_position + 1] == '<');
    if (!isBlock) {
        m_position = start;
        return false;
    }
    ++m_position;
    m_nodes += 2;  // the element and the line feed behind it
    return true;
}

bool BlockScanner::readElement() {
    m_open.clear();
    do {
        Tag tag{};
        if (!readTag(tag)) return false;
        if (!(tag.isClosing ? close(tag.name) : open(tag.name))) return false;
        if (!m_open.empty() && !skipText()) return false;
    } while (!m_open.empty());
    return true;
}

bool BlockScanner::readTag(Tag& tag) {
    if (m_body.substr(m_position, 1) != "<") return false;
    tag.isClosing = m_body.substr(++m_position, 1) == "/";
    if (tag.isClosing) ++m_position;
    const auto* const begin = m_body.begin() + static_cast<std::ptrdiff_t>(m_position);
    const auto* const end = std::find_if_not(begin, m_body.end(), isNameCharacter);
    tag.name = m_body.substr(m_position, static_cast<std::size_t>(end - begin));
    m_position += tag.name.size();
    if (!tag.isClosing && !skipAttributes()) return false;
    return m_body.substr(m_position++, 1) == ">";
}

// Each ` name="value"`, or a bare ` name`.
bool BlockScanner::skipAttributes() {
    while (m_position < m_body.size() && kSpaces.find(m_body[m_position]) != kNone) {
        m_position = std::min(m_body.find_first_not_of(kSpaces, m_position), m_body.size());
        const auto* const begin = m_body.begin() + static_cast<std::ptrdiff_t>(m_position);
        const auto* const end = std::find_if_not(begin, m_body.end(), isAttributeCharacter);
        m_position += static_cast<std::size_t>(end - begin);
        if (m_body.substr(m_position, 1) != "=") continue;
        if (m_body.substr(m_position + 1, 1) != "\"") return false;
        const std::size_t quote = m_body.find('"', m_position + 2);
        if (quote == kNone) return false;
        m_position = quote + 1;
    }
    return true;
}

bool BlockScanner::skipText() {
    const std::size_t end = m_body.find('<', m_position);
    if (end == kNone) return false;
    const std::string_view text = m_body.substr(m_position, end - m_position);
    m_position = end;
    if (text.find('\0') != kNone) return false;
    // The parser moves words out of places where only rows or items belong.
    const Kind kind = m_open.back().kind;
    const bool takesWords =
        kind != Kind::list && kind != Kind::table && kind != Kind::rows && kind != Kind::row;
    return takesWords || text.find_first_not_of(kSpaces) == kNone;
}

bool BlockScanner::open(std::string_view name) {
    const Kind kind = kindOf(name);
    if (m_open.size() >= kDeepest || !mayHold(kind, name)) return false;
    if (kind != Kind::empty) {
        m_open.push_back({name, kind});
    } else if (m_open.empty() && name != "hr") {
        return false;
    }
    return true;
}

bool BlockScanner::close(std::string_view name) {
    if (m_open.empty() || m_open.back().name != name) return false;
    m_open.pop_back();
    return true;
}

bool BlockScanner::mayHold(Kind kind, std::string_view name) const {
    const Kind parent = m_open.empty() ? Kind::block : m_open.back().kind;
    const bool holdsBlocks = parent == Kind::block || parent == Kind::item;
    switch (kind) {
        case Kind::block:
        case Kind::phrasesOnly:
        case Kind::list:
        case Kind::table:
            return holdsBlocks;
        case Kind::item:
            return parent == Kind::list;
        case Kind::rows:
            return parent == Kind::table;
        case Kind::row:
            return parent == Kind::rows;
        case Kind::cell:
            return parent == Kind::row;
        case Kind::inlined:
        case Kind::empty:
            if (name == "hr") return holdsBlocks;
            if (name == "a" && isInsideLink()) return false;
            // At the top and in bare containers words could run together with what follows.
            return !m_open.empty() && parent != Kind::list && parent != Kind::table &&
                   parent != Kind::rows && parent != Kind::row;
        case Kind::none:
            return false;
    }
    return false;
}

bool BlockScanner::isInsideLink() const {
    return std::ranges::find(m_open, std::string_view("a"), &Element::name) != m_open.end();
}

}  // namespace corvel
