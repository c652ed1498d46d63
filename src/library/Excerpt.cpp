#include "library/Excerpt.h"

#include "library/Lines.h"
#include "platform/Ascii.h"
#include "platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kLength = 200;

bool isLetterOrDigit(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || static_cast<unsigned char>(byte) >= 0x80;
}

bool isPunctuation(char byte) {
    return byte > ' ' && byte < 0x7F && !isLetterOrDigit(byte);
}

// Rules, the line under a table's head, the marks of a fence: lines that say nothing.
bool isOrnament(std::string_view line) {
    if (line.starts_with("```") || line.starts_with("~~~")) return true;
    return line.find_first_not_of("-=*_|: \t") == line.npos;
}

// Quotation marks, bullets and hashes, one inside the other; a tag's hash stays.
std::string_view withoutBlockMarks(std::string_view line) {
    while (!line.empty()) {
        std::size_t marks = 0;
        if (line[0] == '>') {
            marks = 1;
        } else if (line.size() > 1 && (line[1] == ' ' || line[1] == '\t') &&
                   std::string_view("-*+").find(line[0]) != std::string_view::npos) {
            marks = 2;
        } else if (line[0] == '#') {
            marks = line.find_first_not_of('#');
            if (marks == line.npos) return {};
            if (marks > 6 || line[marks] != ' ') return line;
        } else {
            return line;
        }
        line = trimmed(line.substr(marks));
    }
    return line;
}

}  // namespace

void Excerpt::addLine(std::string_view line) {
    if (isOrnament(line)) return;
    addInline(withoutBlockMarks(line));
    m_isSpaceDue = true;
}

bool Excerpt::isFull() const {
    return m_codePoints >= kLength;
}

std::string Excerpt::take() {
    m_codePoints = 0;
    return std::string(text::prefixByGraphemes(std::exchange(m_text, {}), kLength));
}

void Excerpt::addInline(std::string_view text) {
    for (std::size_t position = 0; position < text.size() && !isFull();) {
        const char byte = text[position];
        if (!ascii::isAscii(byte)) {
            position = addBeyondAscii(text, position);
        } else if (byte <= ' ') {
            m_isSpaceDue = true;
            ++position;
        } else if (isPunctuation(byte)) {
            position = addMark(text, position);
        } else {
            add(byte);
            ++position;
        }
    }
}

// Adds one character, or the space that it is, and returns where to go on.
std::size_t Excerpt::addBeyondAscii(std::string_view text, std::size_t position) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t next = position;
    UChar32 character = 0;
    U8_NEXT(bytes, next, text.size(), character);
    if (character >= 0 && u_isUWhiteSpace(character) != 0) {
        m_isSpaceDue = true;
        return next;
    }
    for (; position < next; ++position)
        add(text[position]);
    return next;
}

// Adds what stands at a mark, if anything, and returns where to go on.
std::size_t Excerpt::addMark(std::string_view text, std::size_t position) {
    const char mark = text[position];
    const char before = position > 0 ? text[position - 1] : ' ';
    const char after = position + 1 < text.size() ? text[position + 1] : ' ';
    switch (mark) {
        case '`':
            return position + 1;
        case '|':
            m_isSpaceDue = true;
            return position + 1;
        case '*':
            if (before != ' ' || after != ' ') return position + 1;
            break;
        case '_':
            if ((before != ' ' || after != ' ') &&
                !(isLetterOrDigit(before) && isLetterOrDigit(after)))
                return position + 1;
            break;
        case '~':
            if (before == '~' || after == '~') return position + 1;
            break;
        case '\\':
            if (!isPunctuation(after)) break;
            add(after);
            return position + 2;
        case '!':
            if (after == '[') return addLink(text, position + 1);
            break;
        case '[':
            return addLink(text, position);
        case '<': {
            const bool isTag = isLetterOrDigit(after) || after == '/' || after == '!';
            const std::size_t close = isTag ? text.find('>', position) : text.npos;
            if (close != text.npos) return close + 1;
            break;
        }
        default:
            break;
    }
    add(mark);
    return position + 1;
}

// "[label](address)" and "[label][name]" give the label; other brackets stay as they are.
std::size_t Excerpt::addLink(std::string_view text, std::size_t position) {
    const std::size_t labelEnd = text.find(']', position);
    const char opener =
        labelEnd != text.npos && labelEnd + 1 < text.size() ? text[labelEnd + 1] : ' ';
    const std::size_t end = opener == '('   ? text.find(')', labelEnd)
                            : opener == '[' ? text.find(']', labelEnd + 1)
                                            : text.npos;
    if (end == text.npos) {
        add('[');
        return position + 1;
    }
    addInline(text.substr(position + 1, labelEnd - position - 1));
    return end + 1;
}

void Excerpt::add(char byte) {
    if (m_isSpaceDue && !m_text.empty()) {
        m_text.push_back(' ');
        ++m_codePoints;
    }
    m_isSpaceDue = false;
    m_text.push_back(byte);
    const bool isContinuation = (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
    if (!isContinuation) ++m_codePoints;
}

}  // namespace corvel
