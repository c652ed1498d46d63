#include "export/pdf/ContentReader.h"

#include <glib.h>

#include <algorithm>
#include <cmath>

namespace corvel {

namespace {

using Rectangle = QPDFObjectHandle::Rectangle;
using Token = QPDFTokenizer::Token;

bool isOperand(const Token& token) {
    const auto type = token.getType();
    return type != QPDFTokenizer::tt_space && type != QPDFTokenizer::tt_comment;
}

// One part of a colour as a byte; none when it is not a byte's share, so not one of ours.
std::optional<int> byteOf(double share) {
    const double scaled = share * 255;
    const double nearest = std::round(scaled);
    if (std::abs(scaled - nearest) > 0.2) return std::nullopt;
    return static_cast<int>(nearest);
}

}  // namespace

void ContentReader::handleToken(const Token& token) {
    m_waiting.push_back(token);
    if (token.getType() == QPDFTokenizer::tt_word) {
        execute(token.getValue());
        m_operands.clear();
        if (!m_path) flush();
    } else if (token.getType() == QPDFTokenizer::tt_inline_image) {
        m_operands.clear();
        flush();
    } else if (isOperand(token)) {
        m_operands.push_back(token);
    }
}

void ContentReader::handleEOF() {
    flush();
}

void ContentReader::flush() {
    for (const auto& token : m_waiting) {
        writeToken(token);
    }
    m_waiting.clear();
}

void ContentReader::execute(const std::string& name) {
    if (executeState(name) || executePath(name)) return;
    if (name == "Do" && !m_operands.empty()) {
        m_forms.push_back({m_operands.back().getValue(), m_state.matrix});
    }
}

bool ContentReader::executeState(const std::string& name) {
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

bool ContentReader::executePath(const std::string& name) {
    if (name == "re") {
        addRectangle();
    } else if (name == "m" || name == "l" || name == "c" || name == "v" || name == "y") {
        addPoints();
    } else if (name == "W" || name == "W*") {
        m_isClipping = true;
    } else if (name != "h") {
        finishPath(name);
        return false;
    }
    return true;
}

void ContentReader::finishPath(const std::string& name) {
    const bool isFill = name == "f" || name == "F" || name == "f*";
    if (m_path && isFill && m_state.mark && !m_isClipping) {
        m_shapes.push_back({*m_state.mark, *m_path});
        m_waiting.clear();
        writeToken(Token(QPDFTokenizer::tt_space, "\n"));
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
    for (std::size_t pair = 0; pair + 1 < m_operands.size(); pair += 2) {
        extend(number(pair + 1), number(pair));
    }
}

void ContentReader::extend(double x, double y) {
    double px = 0;
    double py = 0;
    m_state.matrix.transform(x, y, px, py);
    if (!m_path) m_path = Rectangle(px, py, px, py);
    m_path->llx = std::min(m_path->llx, px);
    m_path->lly = std::min(m_path->lly, py);
    m_path->urx = std::max(m_path->urx, px);
    m_path->ury = std::max(m_path->ury, py);
}

double ContentReader::number(std::size_t fromEnd) const {
    if (fromEnd >= m_operands.size()) return 0;
    const std::string& text = m_operands[m_operands.size() - 1 - fromEnd].getValue();
    return g_ascii_strtod(text.c_str(), nullptr);
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
