#include "export/pdf/ContentReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace corvel {

namespace {

using Rectangle = QPDFObjectHandle::Rectangle;

enum class Class : unsigned char { regular, space, delimiter };

constexpr std::array<Class, 256> kClasses = [] {
    std::array<Class, 256> classes{};
    for (const char space : {'\0', '\t', '\n', '\f', '\r', ' '})
        classes[static_cast<unsigned char>(space)] = Class::space;
    for (const char delimiter : {'(', ')', '<', '>', '[', ']', '{', '}', '/', '%'})
        classes[static_cast<unsigned char>(delimiter)] = Class::delimiter;
    return classes;
}();

Class classOf(char character) {
    return kClasses[static_cast<unsigned char>(character)];
}

std::size_t endOfRegular(std::string_view text, std::size_t position) {
    while (position < text.size() && classOf(text[position]) == Class::regular)
        ++position;
    return position;
}

std::size_t behind(std::string_view text, char wanted, std::size_t position) {
    const auto found = text.find(wanted, position);
    return found == std::string_view::npos ? text.size() : found + 1;
}

// Parentheses nest, and a backslash takes the meaning from the next one.
std::size_t behindString(std::string_view text, std::size_t position) {
    int depth = 0;
    for (; position < text.size(); ++position) {
        const char character = text[position];
        if (character == '\\') {
            ++position;
        } else if (character == '(') {
            ++depth;
        } else if (character == ')' && --depth == 0) {
            return position + 1;
        }
    }
    return text.size();
}

// One part of a colour as a byte; none when it is not a byte's share, so not one of ours.
std::optional<int> byteOf(double share) {
    const double scaled = share * 255;
    const double nearest = std::round(scaled);
    if (std::abs(scaled - nearest) > 0.2) return std::nullopt;
    return static_cast<int>(nearest);
}

}  // namespace

std::string ContentReader::filter(std::string_view content) {
    m_content = content;
    m_output.reserve(content.size());
    for (std::size_t position = 0; position < content.size();) {
        if (classOf(content[position]) == Class::space) {
            ++position;
        } else {
            readToken(position);
        }
    }
    return std::move(m_output.append(m_content.substr(m_copied)));
}

void ContentReader::readToken(std::size_t& position) {
    switch (m_content[position]) {
        case '(':
            position = behindString(m_content, position);
            return;
        case '%':
            position = behind(m_content, '\n', position);
            return;
        case '<':
            // The two brackets of a dictionary are passed one by one.
            if (m_content.substr(position, 2) != "<<")
                position = behind(m_content, '>', position);
            else
                position += 2;
            return;
        case '/': {
            const std::size_t end = endOfRegular(m_content, position + 1);
            m_name = m_content.substr(position, end - position);
            position = end;
            return;
        }
        default:
            if (classOf(m_content[position]) == Class::regular) return readWord(position);
            ++position;
    }
}

void ContentReader::readWord(std::size_t& position) {
    const std::size_t end = endOfRegular(m_content, position);
    const char* first = m_content.data() + position;
    double value = 0;
    const auto result = std::from_chars(first, m_content.data() + end, value);
    const bool isNumber = result.ec == std::errc{} && result.ptr == m_content.data() + end;
    if (isNumber) {
        m_numbers.push_back(value);
        position = end;
        return;
    }
    const auto name = m_content.substr(position, end - position);
    // What follows is an image's bytes: nothing behind it is looked at.
    position = name == "BI" ? m_content.size() : end;
    execute(name, end);
    m_numbers.clear();
    m_name = {};
    m_operands = end;
}

void ContentReader::execute(std::string_view name, std::size_t end) {
    if (executeState(name) || executePath(name)) return;
    finishPath(name, end);
    if (name == "Do") m_forms.push_back({std::string(m_name), m_state.matrix});
}

bool ContentReader::executeState(std::string_view name) {
    if (name == "q") {
        m_saved.push_back(m_state);
    } else if (name == "Q") {
        if (!m_saved.empty()) {
            m_state = m_saved.back();
            m_saved.pop_back();
        }
    } else if (name == "cm") {
        m_state.matrix.concat({number(5), number(4), number(3), number(2), number(1), number(0)});
    } else if (name == "rg") {
        m_state.mark = markOfColor();
    } else if (name == "g" || name == "k" || name == "cs" || name == "sc" || name == "scn") {
        m_state.mark.reset();
    } else {
        return false;
    }
    return true;
}

bool ContentReader::executePath(std::string_view name) {
    if (name == "re") {
        addRectangle();
    } else if (name == "m" || name == "l" || name == "c" || name == "v" || name == "y") {
        addPoints();
    } else if (name == "W" || name == "W*") {
        m_isClipping = true;
    } else if (name != "h") {
        return false;
    }
    return true;
}

void ContentReader::finishPath(std::string_view name, std::size_t end) {
    const bool isFill = name == "f" || name == "F" || name == "f*";
    if (m_path && isFill && m_state.mark && !m_isClipping) {
        m_shapes.push_back({*m_state.mark, *m_path});
        m_output.append(m_content.substr(m_copied, m_pathStart - m_copied));
        m_copied = end;
    }
    m_path.reset();
    m_isClipping = false;
}

void ContentReader::addRectangle() {
    const double x = number(3);
    const double y = number(2);
    extend(x, y);
    extend(x + number(1), y);
    extend(x, y + number(0));
    extend(x + number(1), y + number(0));
}

void ContentReader::addPoints() {
    for (std::size_t pair = 0; pair + 1 < m_numbers.size(); pair += 2) {
        extend(number(pair + 1), number(pair));
    }
}

void ContentReader::extend(double x, double y) {
    double px = 0;
    double py = 0;
    m_state.matrix.transform(x, y, px, py);
    if (!m_path) {
        m_path = Rectangle(px, py, px, py);
        m_pathStart = m_operands;
    }
    m_path->llx = std::min(m_path->llx, px);
    m_path->lly = std::min(m_path->lly, py);
    m_path->urx = std::max(m_path->urx, px);
    m_path->ury = std::max(m_path->ury, py);
}

double ContentReader::number(std::size_t fromEnd) const {
    return fromEnd < m_numbers.size() ? m_numbers[m_numbers.size() - 1 - fromEnd] : 0;
}

std::optional<int> ContentReader::markOfColor() const {
    const auto red = byteOf(number(2));
    const auto green = byteOf(number(1));
    const auto blue = byteOf(number(0));
    if (red != m_colors.red || !green || !blue) return std::nullopt;
    const int mark = *green * 256 + *blue;
    return mark < m_markCount ? std::optional(mark) : std::nullopt;
}

}  // namespace corvel
