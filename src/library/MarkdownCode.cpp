#include "library/MarkdownCode.h"

#include "library/MarkdownFence.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace corvel {

namespace {

class CodeScanner {
public:
    explicit CodeScanner(std::string_view text) : m_text(text) {}

    std::vector<TextRange> ranges() {
        std::size_t position = 0;
        while (position < m_text.size()) {
            const std::size_t newline = m_text.find('\n', position);
            const std::size_t next = newline == m_text.npos ? m_text.size() : newline + 1;
            addLine(position, next);
            position = next;
        }
        if (m_open.length > 0) {
            m_ranges.push_back({m_start, m_text.size()});
        } else {
            endParagraph(m_text.size());
        }
        return std::move(m_ranges);
    }

private:
    void addLine(std::size_t begin, std::size_t end) {
        const auto line = m_text.substr(begin, end - begin);
        if (m_open.length > 0) {
            if (!m_open.isClosedBy(line)) return;
            m_ranges.push_back({m_start, end});
            m_open = {};
            m_start = end;
        } else if (const auto fence = MarkdownFence::openedBy(line); fence.length > 0) {
            endParagraph(begin);
            m_open = fence;
            m_start = begin;
        } else if (MarkdownFence::withoutBlockMarks(line).find_first_not_of("\r\n") == line.npos) {
            endParagraph(end);
        }
    }

    // Pairs the runs of backticks between `m_start` and `end`.
    void endParagraph(std::size_t end) {
        std::vector<TextRange> runs;
        const auto paragraph = m_text.substr(0, end);
        for (std::size_t at = paragraph.find('`', m_start); at != paragraph.npos;) {
            const std::size_t runEnd = std::min(paragraph.find_first_not_of('`', at), end);
            runs.push_back({at, runEnd});
            at = paragraph.find('`', runEnd);
        }
        pair(runs);
        m_start = end;
    }

    void pair(const std::vector<TextRange>& runs) {
        std::vector<std::size_t> partner(runs.size(), 0);  // zero: none, as none is the first's
        std::unordered_map<std::size_t, std::size_t> nextOfLength;
        for (std::size_t i = runs.size(); i-- > 0;) {
            const std::size_t length = runs[i].end - runs[i].begin;
            const auto [found, isNew] = nextOfLength.try_emplace(length, i);
            if (!isNew) partner[i] = std::exchange(found->second, i);
        }
        for (std::size_t i = 0; i < runs.size(); ++i) {
            if (partner[i] == 0 || isEscaped(runs[i].begin)) continue;
            m_ranges.push_back({runs[i].begin, runs[partner[i]].end});
            i = partner[i];
        }
    }

    bool isEscaped(std::size_t position) const {
        std::size_t slashes = 0;
        while (slashes < position && m_text[position - 1 - slashes] == '\\')
            ++slashes;
        return slashes % 2 == 1;
    }

    std::string_view m_text;
    std::vector<TextRange> m_ranges;
    MarkdownFence m_open;
    std::size_t m_start = 0;  // of the paragraph or of the open fence
};

}  // namespace

std::vector<TextRange> codeRangesIn(std::string_view markdown) {
    return CodeScanner(markdown).ranges();
}

bool contains(const std::vector<TextRange>& ranges, std::size_t position) {
    const auto behind =
        std::partition_point(ranges.begin(), ranges.end(),
                             [position](const TextRange& range) { return range.end <= position; });
    return behind != ranges.end() && behind->begin <= position;
}

}  // namespace corvel
