#include "app/editing/BlockCommands.h"

#include "app/editing/EditList.h"
#include "app/editing/LinePrefix.h"
#include "library/MarkdownFence.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace corvel::editing {

namespace {

constexpr std::size_t kDeepestHeading = 6;
constexpr std::size_t kShortestFence = 3;

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

// The lines that the selection touches; blank ones only when there are no others.
std::vector<TextRange> selectedLines(std::string_view text, const Selection& selection) {
    std::vector<TextRange> lines;
    for (auto at = selection.begin(); at <= selection.end();) {
        const auto line = lineAt(text, at);
        if (lines.empty() || line.begin < selection.end()) lines.push_back(line);
        at = line.end + 1;
    }
    const auto written = std::ranges::count_if(
        lines, [&](const TextRange& line) { return !isBlank(slice(text, line)); });
    if (written > 0) {
        std::erase_if(lines, [&](const TextRange& line) { return isBlank(slice(text, line)); });
    } else {
        lines.resize(1);
    }
    return lines;
}

/// The marks of a heading in a line, with the blanks behind them.
struct HeadingMarks {
    TextRange range;
    std::size_t level;
};

HeadingMarks headingOf(std::string_view text, const TextRange& lineRange) {
    const auto line = slice(text, lineRange);
    const auto begin = LinePrefix::of(line).end;
    const auto end = std::min(line.find_first_not_of('#', begin), line.size());
    const bool isHeading = end > begin && end - begin <= kDeepestHeading &&
                           (end == line.size() || line[end] == ' ' || line[end] == '\t');
    const auto words =
        isHeading ? std::min(line.find_first_not_of(" \t", end), line.size()) : begin;
    return {{lineRange.begin + begin, lineRange.begin + words}, isHeading ? end - begin : 0};
}

void makeTask(EditList& edits, std::string_view line, std::size_t at) {
    const auto prefix = LinePrefix::of(line);
    if (prefix.isTask()) return;
    edits.insert(at + prefix.markEnd, prefix.isItem() ? "[ ] " : "- [ ] ");
}

void makePlain(EditList& edits, std::string_view line, std::size_t at) {
    const auto prefix = LinePrefix::of(line);
    edits.remove(at + (prefix.isOrdered() ? prefix.markEnd : prefix.indentEnd), at + prefix.end);
}

// The selection without changes, when there are none to make.
TextEdit editOf(const EditList& edits, std::string_view text, const Selection& selection) {
    return edits.isEmpty() ? TextEdit{{0, 0}, {}, selection} : edits.toEdit(text, selection);
}

std::size_t longestFenceIn(std::string_view text) {
    std::size_t longest = 0;
    for (auto at = text.find('`'); at != text.npos;) {
        const auto end = std::min(text.find_first_not_of('`', at), text.size());
        longest = std::max(longest, end - at);
        at = text.find('`', end);
    }
    return longest;
}

struct FenceLines {
    std::optional<TextRange> opening;
    std::optional<TextRange> closing;
};

// The nearest line from `line` upwards that could open a code block.
std::optional<TextRange> openingFrom(std::string_view text, TextRange line) {
    while (MarkdownFence::openedBy(slice(text, line)).length == 0) {
        if (line.begin == 0) return std::nullopt;
        line = lineAt(text, line.begin - 1);
    }
    return line;
}

std::optional<TextRange> closingFrom(std::string_view text, TextRange line, MarkdownFence fence) {
    while (!fence.isClosedBy(slice(text, line))) {
        if (line.end >= text.size()) return std::nullopt;
        line = lineAt(text, line.end + 1);
    }
    return line;
}

FenceLines fencesAround(std::string_view text, const Selection& selection, bool isInFence) {
    FenceLines found;
    const auto line = lineAt(text, selection.begin());
    if (isInFence && line.begin == 0) return found;
    found.opening = openingFrom(text, isInFence ? lineAt(text, line.begin - 1) : line);
    const auto body = isInFence ? line.begin : line.end + 1;
    if (!found.opening || body > text.size()) return found;
    const auto fence = MarkdownFence::openedBy(slice(text, *found.opening));
    found.closing = closingFrom(text, lineAt(text, body), fence);
    return found;
}

void removeLine(EditList& edits, std::string_view text, const TextRange& line) {
    if (line.end < text.size()) {
        edits.remove(line.begin, line.end + 1);
    } else {
        edits.remove(line.begin == 0 ? 0 : line.begin - 1, line.end);
    }
}

TextEdit unfenced(std::string_view text, const Selection& selection, bool isInFence) {
    const auto fences = fencesAround(text, selection, isInFence);
    EditList edits;
    if (fences.closing && fences.closing->begin == fences.opening->end + 1) {
        // Nothing between them: the line end is one that both would take.
        removeLine(edits, text, {fences.opening->begin, fences.closing->end});
        return edits.toEdit(text, selection);
    }
    if (fences.opening) removeLine(edits, text, *fences.opening);
    if (fences.closing) removeLine(edits, text, *fences.closing);
    return editOf(edits, text, selection);
}

TextEdit fenced(std::string_view text, const Selection& selection) {
    const auto lastPosition = selection.isEmpty() || text[selection.end() - 1] != '\n'
                                  ? selection.end()
                                  : selection.end() - 1;
    const auto begin = lineAt(text, selection.begin()).begin;
    const auto end = lineAt(text, std::max(lastPosition, begin)).end;
    const auto code = text.substr(begin, end - begin);
    const std::string fence(std::max(kShortestFence, longestFenceIn(code) + 1), '`');
    EditList edits;
    edits.insert(begin, fence + "\n");
    edits.insert(end, "\n" + fence);
    auto edit = edits.toEdit(text, selection);
    const auto behind = fence.size() + 1;
    edit.selection = {selection.anchor + behind, selection.cursor + behind};
    return edit;
}

}  // namespace

TextEdit cycledHeading(std::string_view text, const Selection& selection) {
    const auto lines = selectedLines(text, selection);
    const auto level = (headingOf(text, lines.front()).level + 1) % (kDeepestHeading + 1);
    EditList edits;
    for (const auto& line : lines) {
        const auto old = headingOf(text, line).range;
        const std::string marks = level == 0 ? "" : std::string(level, '#') + " ";
        if (slice(text, old) != marks) edits.replace(old.begin, old.end, marks);
    }
    return editOf(edits, text, selection);
}

TextEdit toggledTasks(std::string_view text, const Selection& selection) {
    const auto lines = selectedLines(text, selection);
    const bool areTasks = std::ranges::all_of(
        lines, [&](const TextRange& line) { return LinePrefix::of(slice(text, line)).isTask(); });
    EditList edits;
    for (const auto& line : lines) {
        (areTasks ? makePlain : makeTask)(edits, slice(text, line), line.begin);
    }
    return editOf(edits, text, selection);
}

TextEdit toggledCodeBlock(std::string_view text, const Selection& selection, bool isInFence) {
    const auto first = slice(text, lineAt(text, selection.begin()));
    const bool isFence = isInFence || MarkdownFence::openedBy(first).length > 0;
    return isFence ? unfenced(text, selection, isInFence) : fenced(text, selection);
}

}  // namespace corvel::editing
