#include "app/assistant/ReplyBlocks.h"

#include "platform/Ascii.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr std::size_t kLeastFence = 3;

std::size_t indentOf(std::string_view line) {
    return std::min(line.find_first_not_of(" \t"), line.size());
}

bool isListItem(std::string_view line) {
    line.remove_prefix(indentOf(line));
    if (line.empty()) return false;
    std::size_t mark = line.find_first_not_of("0123456789");
    if (mark == line.npos) return false;
    if (mark > 0) {
        if (line[mark] != '.' && line[mark] != ')') return false;
    } else if (line[0] != '-' && line[0] != '*' && line[0] != '+') {
        return false;
    }
    return ++mark == line.size() || line[mark] == ' ' || line[mark] == '\t';
}

/// Raw HTML, some of which a blank line does not end; addresses in angle brackets are none.
bool opensHtml(std::string_view line) {
    line.remove_prefix(indentOf(line));
    if (line.size() < 2 || line[0] != '<') return false;
    const bool isTag =
        ascii::isLetter(line[1]) || line[1] == '/' || line[1] == '!' || line[1] == '?';
    return isTag && !line.starts_with("<http") && !line.starts_with("<mailto:");
}

}  // namespace

void ReplyBlocks::append(std::string_view piece) {
    std::size_t end = m_text.size();
    m_text += piece;
    for (end = m_text.find('\n', end); end != m_text.npos; end = m_text.find('\n', m_read)) {
        readLine(std::string_view(m_text).substr(m_read, end - m_read), m_read);
        m_read = end + 1;
    }
}

void ReplyBlocks::readLine(std::string_view line, std::size_t start) {
    if (m_isStuck) return;
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t indent = indentOf(line);
    if (m_fence == 0 && indent == line.size()) {
        m_isAfterBlank = true;
        return;
    }
    const bool isItem = isListItem(line);
    if (m_fence == 0) {
        // An item after a blank line goes on with a list above it, and so does what is indented.
        if (m_isAfterBlank && indent == 0 && !(isItem && m_isList)) {
            m_ends.push_back(start);
            m_isList = false;
        }
        m_isList = m_isList || isItem;
        m_isStuck = opensHtml(line);
    }
    m_isAfterBlank = false;
    readFence(line);
}

// Fences may stand in lists and quotations: all that may be before one is passed over.
void ReplyBlocks::readFence(std::string_view line) {
    const auto start = line.find_first_not_of(m_fence == 0 ? " \t>-*+0123456789.)" : " \t>");
    if (start == line.npos) return;
    const char mark = line[start];
    if (mark != '`' && mark != '~') return;
    const auto end = std::min(line.find_first_not_of(mark, start), line.size());
    const std::size_t length = end - start;
    const auto rest = line.substr(end);
    if (m_fence == 0) {
        const bool opens = length >= kLeastFence && (mark == '~' || rest.find('`') == rest.npos);
        if (!opens) return;
        m_fence = mark;
        m_fenceLength = length;
    } else if (mark == m_fence && length >= m_fenceLength && indentOf(rest) == rest.size()) {
        m_fence = 0;
    }
}

std::string ReplyBlocks::takeEnded(std::size_t limit) {
    std::size_t end = 0;
    while (!m_ends.empty() && (end == 0 || m_ends.front() <= limit)) {
        end = m_ends.front();
        m_ends.pop_front();
    }
    if (end == 0) return {};
    std::string ended = m_text.substr(0, end);
    m_text.erase(0, end);
    m_read -= end;
    for (auto& later : m_ends)
        later -= end;
    return ended;
}

std::string_view ReplyBlocks::open() const {
    return std::string_view(m_text).substr(m_ends.empty() ? 0 : m_ends.back());
}

}  // namespace corvel
