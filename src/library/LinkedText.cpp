#include "library/LinkedText.h"

#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

namespace corvel::linkedText {

namespace {

constexpr std::string_view kMark = "\xEF\xBB\xBF";

/// A line and how it ends; the last one of a text has no end of its own.
struct Line {
    std::string_view content;
    bool isCrlf = false;
};

std::string_view withoutMark(std::string_view bytes) {
    if (bytes.starts_with(kMark)) bytes.remove_prefix(kMark.size());
    return bytes;
}

std::vector<Line> linesOf(std::string_view text, bool takesCrlf) {
    std::vector<Line> lines;
    for (auto end = text.find('\n'); end != text.npos; end = text.find('\n')) {
        const bool isCrlf = takesCrlf && end > 0 && text[end - 1] == '\r';
        lines.push_back({text.substr(0, isCrlf ? end - 1 : end), isCrlf});
        text.remove_prefix(end + 1);
    }
    lines.push_back({text, false});
    return lines;
}

/// Gives the lines of a text the ends that the same lines had before.
class LineEnds {
public:
    LineEnds(std::vector<Line>& lines, const std::vector<Line>& before)
        : m_lines(lines), m_before(before) {
        const auto crlf = std::ranges::count(before, true, &Line::isCrlf);
        m_usual = 2 * crlf >= static_cast<std::ptrdiff_t>(before.size());
    }

    void take() {
        // The last line stands apart: it has no end.
        const std::size_t count = m_lines.size() - 1;
        const std::size_t countBefore = m_before.size() - 1;
        const std::size_t shorter = std::min(count, countBefore);
        std::size_t start = 0;
        while (start < shorter && takeSame(start, start))
            ++start;
        std::size_t tail = 0;
        while (tail < shorter - start && takeSame(count - 1 - tail, countBefore - 1 - tail))
            ++tail;
        takeAmong(start, count - tail, start, countBefore - tail);
    }

private:
    bool takeSame(std::size_t line, std::size_t before) {
        if (m_lines[line].content != m_before[before].content) return false;
        m_lines[line].isCrlf = m_before[before].isCrlf;
        return true;
    }

    // Of lines that are there several times the first one behind the last that was found.
    void takeAmong(std::size_t begin,
                   std::size_t end,
                   std::size_t beginBefore,
                   std::size_t endBefore) {
        std::unordered_map<std::string_view, std::vector<std::size_t>> places;
        for (std::size_t i = beginBefore; i < endBefore; ++i)
            places[m_before[i].content].push_back(i);
        std::size_t next = beginBefore;
        for (std::size_t i = begin; i < end; ++i) {
            m_lines[i].isCrlf = m_usual;
            const auto known = places.find(m_lines[i].content);
            if (known == places.end()) continue;
            const auto place = std::ranges::lower_bound(known->second, next);
            if (place == known->second.end()) continue;
            m_lines[i].isCrlf = m_before[*place].isCrlf;
            next = *place + 1;
        }
    }

    std::vector<Line>& m_lines;
    const std::vector<Line>& m_before;
    bool m_usual;
};

std::string joined(const std::vector<Line>& lines, std::string_view mark, std::size_t size) {
    std::string bytes(mark);
    bytes.reserve(mark.size() + size + lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        bytes += lines[i].content;
        if (i + 1 < lines.size()) bytes += lines[i].isCrlf ? "\r\n" : "\n";
    }
    return bytes;
}

}  // namespace

std::optional<LinkFault> faultIn(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return LinkFault::utf16;
    if (bytes.find('\0') != bytes.npos) return LinkFault::binary;
    return text::isValidUtf8(bytes) ? std::nullopt : std::optional(LinkFault::notUtf8);
}

std::string decoded(std::string_view bytes) {
    bytes = withoutMark(bytes);
    std::string text;
    text.reserve(bytes.size());
    for (auto end = bytes.find("\r\n"); end != bytes.npos; end = bytes.find("\r\n")) {
        text += bytes.substr(0, end);
        bytes.remove_prefix(end + 1);  // up to the line feed
    }
    return text += bytes;
}

std::string encoded(std::string_view text, std::string_view base) {
    const auto body = withoutMark(base);
    const auto mark = base.substr(0, base.size() - body.size());
    if (body.find("\r\n") == body.npos) return std::string(mark) += text;
    auto lines = linesOf(text, false);
    LineEnds(lines, linesOf(body, true)).take();
    return joined(lines, mark, text.size());
}

}  // namespace corvel::linkedText
