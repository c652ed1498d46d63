#include "app/editing/EmphasisSpans.h"

#include "platform/Characters.h"

#include <algorithm>

namespace corvel::editing {

namespace {

/// A run of equal marks, of which the outer ones may be used up.
struct Run {
    char mark;
    std::size_t begin;
    std::size_t end;
    bool mayOpen;
    bool mayClose;

    std::size_t length() const { return end - begin; }
};

Run runAt(std::string_view line, std::size_t begin) {
    const char mark = line[begin];
    const auto end = std::min(line.find_first_not_of(mark, begin), line.size());
    const auto before = text::characterBefore(line, begin);
    const auto after = text::characterAt(line, end);
    const bool isLeft =
        !text::isBlank(after) &&
        (!text::isPunctuation(after) || text::isBlank(before) || text::isPunctuation(before));
    const bool isRight =
        !text::isBlank(before) &&
        (!text::isPunctuation(before) || text::isBlank(after) || text::isPunctuation(after));
    const bool isStrict = mark == '_';  // never inside a word
    return {mark, begin, end, isLeft && (!isStrict || !isRight || text::isPunctuation(before)),
            isRight && (!isStrict || !isLeft || text::isPunctuation(after))};
}

bool isEscaped(std::string_view line, std::size_t at) {
    const auto before = line.substr(0, at);
    return (before.size() - (before.find_last_not_of('\\') + 1)) % 2 == 1;
}

class SpanReader {
public:
    explicit SpanReader(std::string_view line) : m_line(line), m_code(codeRangesIn(line)) {}

    std::vector<EmphasisSpan> spans() {
        constexpr std::string_view kMarks = "*_~";
        auto at = m_line.find_first_of(kMarks);
        while (at != m_line.npos) {
            const auto run = runAt(m_line, at);
            const auto code = contains(m_code, at);
            if (!code && !isEscaped(m_line, at) && (run.mark != '~' || run.length() == 2)) add(run);
            at = m_line.find_first_of(kMarks, run.end);
        }
        return std::move(m_spans);
    }

private:
    void add(Run run) {
        while (run.mayClose && run.length() > 0 && closeWith(run)) {
        }
        if (run.mayOpen && run.length() > 0) m_open.push_back(run);
    }

    bool closeWith(Run& run) {
        const auto opener = std::find_if(m_open.rbegin(), m_open.rend(),
                                         [&](const Run& open) { return open.mark == run.mark; });
        if (opener == m_open.rend()) return false;
        const std::size_t used = opener->length() >= 2 && run.length() >= 2 ? 2 : 1;
        if (run.mark == '~' && used != 2) return false;
        m_spans.push_back({kindOf(run.mark, used),
                           {opener->end - used, opener->end},
                           {run.begin, run.begin + used}});
        opener->end -= used;
        run.begin += used;
        // What was opened in between stays unclosed.
        m_open.erase(opener.base(), m_open.end());
        if (m_open.back().length() == 0) m_open.pop_back();
        return true;
    }

    static Emphasis kindOf(char mark, std::size_t used) {
        if (mark == '~') return Emphasis::strikethrough;
        return used == 2 ? Emphasis::bold : Emphasis::italic;
    }

    std::string_view m_line;
    std::vector<TextRange> m_code;
    std::vector<Run> m_open;
    std::vector<EmphasisSpan> m_spans;
};

}  // namespace

std::vector<EmphasisSpan> emphasisSpansIn(std::string_view line) {
    return SpanReader(line).spans();
}

}  // namespace corvel::editing
