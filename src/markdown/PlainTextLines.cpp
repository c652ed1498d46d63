#include "markdown/PlainTextLines.h"

#include <glib.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

// Nobody nests deeper, but for a hostile note: there each level would cost blanks in every line.
constexpr std::size_t kDeepest = 24;

}  // namespace

void PlainTextLines::openLevel(std::string marker) {
    const std::size_t width = columnsOf(marker);
    m_levels.push_back({std::move(marker), width, true});
}

void PlainTextLines::openLevel(std::size_t width) {
    m_levels.push_back({{}, width, false});
}

void PlainTextLines::closeLevel() {
    if (m_levels.back().isDue) write({});
    m_levels.pop_back();
    m_firstDue = std::min(m_firstDue, m_levels.size());
}

void PlainTextLines::write(std::string_view block) {
    if (m_isApart && !m_text.empty()) m_text += '\n';
    m_isApart = false;
    while (true) {
        const std::size_t end = std::min(block.find('\n'), block.size());
        beginLine();
        m_text += block.substr(0, end);
        m_text.erase(m_text.find_last_not_of(" \t") + 1);
        m_text += '\n';
        if (end == block.size()) return;
        block.remove_prefix(end + 1);
    }
}

void PlainTextLines::beginLine() {
    const std::size_t shown = std::min(m_levels.size(), kDeepest);
    for (std::size_t i = 0; i < std::min(m_firstDue, shown); ++i) {
        m_text.append(m_levels[i].width, ' ');
    }
    for (; m_firstDue < m_levels.size(); ++m_firstDue) {
        Level& level = m_levels[m_firstDue];
        if (level.isDue) {
            m_text += level.marker;
        } else if (m_firstDue < kDeepest) {
            m_text.append(level.width, ' ');
        }
        level.isDue = false;
    }
}

std::string PlainTextLines::take() {
    return std::move(m_text);
}

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    const char* end = text.data() + text.size();
    for (const char* at = text.data(); at < end; at = g_utf8_next_char(at)) {
        const gunichar character = g_utf8_get_char(at);
        if (g_unichar_iszerowidth(character)) continue;
        columns += g_unichar_iswide(character) ? 2 : 1;
    }
    return columns;
}

}  // namespace corvel
