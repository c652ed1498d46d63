#include "library/MarkdownFence.h"

#include <algorithm>

namespace corvel {

namespace {

MarkdownFence startOf(std::string_view line) {
    if (line.empty() || (line[0] != '`' && line[0] != '~')) return {};
    const std::size_t length = std::min(line.find_first_not_of(line[0]), line.size());
    return length < 3 ? MarkdownFence{} : MarkdownFence{line[0], length};
}

}  // namespace

std::string_view MarkdownFence::withoutBlockMarks(std::string_view line) {
    constexpr std::string_view kDigits = "0123456789";
    while (true) {
        line.remove_prefix(std::min(line.find_first_not_of(" \t>"), line.size()));
        const std::size_t digits = std::min(line.find_first_not_of(kDigits), line.size());
        const std::size_t mark = digits < 10 ? digits : 0;
        const bool isItem =
            mark + 1 < line.size() && (line[mark + 1] == ' ' || line[mark + 1] == '\t') &&
            std::string_view(mark > 0 ? ".)" : "-*+").find(line[mark]) != std::string_view::npos;
        if (!isItem) return line;
        line.remove_prefix(mark + 2);
    }
}

MarkdownFence MarkdownFence::openedBy(std::string_view line) {
    line = withoutBlockMarks(line);
    const auto fence = startOf(line);
    const bool isCodeSpan = fence.mark == '`' && line.find('`', fence.length) != line.npos;
    return isCodeSpan ? MarkdownFence{} : fence;
}

bool MarkdownFence::isClosedBy(std::string_view line) const {
    line = withoutBlockMarks(line);
    const auto fence = startOf(line);
    return fence.mark == mark && fence.length >= length &&
           line.find_first_not_of(" \t\r\n", fence.length) == line.npos;
}

}  // namespace corvel
