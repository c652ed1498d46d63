#include "app/editing/BlockState.h"

#include "library/Lines.h"

#include <algorithm>
#include <limits>

namespace corvel::editing {

namespace {

constexpr std::uint16_t kMostFrontMatterLines = 200;
constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCommentEnd = "-->";

bool isKey(std::string_view line) {
    const auto colon = line.find(':');
    const bool isSpaced =
        colon != line.npos && (colon + 1 == line.size() || line[colon + 1] == ' ' ||
                               line[colon + 1] == '\r' || line[colon + 1] == '\t');
    return isSpaced && colon > 0 && line.find_first_of(" \t#*>") >= colon;
}

bool isRule(std::string_view line) {
    line = line.substr(0, line.find_last_not_of(" \t\r") + 1);
    return line == "---" || line == "...";
}

// `line` is read from `from`, outside of comments or inside of one.
bool endsInComment(std::string_view line, bool isInside) {
    std::size_t at = 0;
    while (true) {
        const auto mark = isInside ? kCommentEnd : kCommentStart;
        at = line.find(mark, at);
        if (at == line.npos) return isInside;
        at += mark.size();
        isInside = !isInside;
    }
}

BlockState textAfter(std::string_view line) {
    const auto fence = MarkdownFence::openedBy(line);
    if (fence.length > 0) {
        const auto most = std::size_t{std::numeric_limits<std::uint16_t>::max()};
        return {BlockState::Kind::fence, fence.mark,
                static_cast<std::uint16_t>(std::min(fence.length, most))};
    }
    // Within a code span the marks of a comment are nothing but text.
    const bool mayComment = trimmed(line).starts_with(kCommentStart);
    return {mayComment && endsInComment(line, false) ? BlockState::Kind::comment
                                                     : BlockState::Kind::text};
}

}  // namespace

BlockState BlockState::atStart(std::string_view first, std::string_view second) {
    const bool opens = first.starts_with("---") && isRule(first) && isKey(second);
    return {opens ? Kind::frontMatter : Kind::text};
}

BlockState BlockState::after(std::string_view line) const {
    switch (kind) {
        case Kind::frontMatter:
            if ((length > 0 && isRule(line)) || length >= kMostFrontMatterLines) return {};
            return {kind, 0, static_cast<std::uint16_t>(length + 1)};
        case Kind::fence:
            return fence().isClosedBy(line) ? BlockState{} : *this;
        case Kind::comment:
            return {endsInComment(line, true) ? Kind::comment : Kind::text};
        case Kind::text:
            break;
    }
    return textAfter(line);
}

}  // namespace corvel::editing
