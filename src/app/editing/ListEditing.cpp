#include "app/editing/ListEditing.h"

#include "app/editing/EditList.h"
#include "app/editing/LinePrefix.h"

#include <algorithm>
#include <vector>

namespace corvel::editing {

namespace {

bool isBlank(std::string_view line) {
    return line.find_first_not_of(" \t\r") == line.npos;
}

struct Item {
    TextRange range;
    std::string_view line;
    LinePrefix prefix;
};

Item itemAt(std::string_view text, std::size_t position) {
    const auto range = lineAt(text, position);
    const auto line = slice(text, range);
    return {range, line, LinePrefix::of(line)};
}

std::optional<Item> next(std::string_view text, const Item& item) {
    if (item.range.end >= text.size()) return std::nullopt;
    return itemAt(text, item.range.end + 1);
}

std::optional<Item> previous(std::string_view text, const Item& item) {
    if (item.range.begin == 0) return std::nullopt;
    return itemAt(text, item.range.begin - 1);
}

bool isOfSameList(const Item& a, const Item& b) {
    return a.prefix.mark == b.prefix.mark && a.prefix.isOrdered() == b.prefix.isOrdered() &&
           a.prefix.indent() == b.prefix.indent() && a.prefix.quoteEnd == b.prefix.quoteEnd;
}

// The ordered items that follow in the same list, nested lines skipped.
std::vector<Item> followers(std::string_view text, const Item& item) {
    std::vector<Item> found;
    for (auto line = next(text, item); line; line = next(text, *line)) {
        if (isBlank(line->line)) continue;
        if (isOfSameList(item, *line)) {
            found.push_back(*line);
        } else if (line->prefix.indent() <= item.prefix.indent()) {
            break;
        }
    }
    return found;
}

int numberAfter(const Item& item, const std::vector<Item>& following) {
    // "1." on every line is a way of writing lists as well.
    const bool isConstant =
        !following.empty() && following.front().prefix.number == item.prefix.number;
    return isConstant ? item.prefix.number : item.prefix.number + 1;
}

void renumber(EditList& edits, const std::vector<Item>& items, int first) {
    for (const auto& item : items) {
        if (item.prefix.number != first - 1) return;
        const auto begin = item.range.begin + item.prefix.indentEnd;
        edits.replace(begin, item.range.begin + item.prefix.markEnd,
                      item.prefix.markText(item.line, first));
        ++first;
    }
}

std::string nextPrefix(const Item& item, int number) {
    const auto& prefix = item.prefix;
    std::string text(item.line.substr(0, prefix.indentEnd));
    if (prefix.isOrdered()) {
        text += prefix.markText(item.line, number);
    } else {
        text += item.line.substr(prefix.indentEnd, prefix.markEnd - prefix.indentEnd);
    }
    if (prefix.isTask()) text += "[ ] ";
    return text;
}

// The nearest item before, in the same quotation, that stands further out.
std::optional<Item> parentOf(std::string_view text, const Item& item) {
    for (auto line = previous(text, item); line; line = previous(text, *line)) {
        if (isBlank(line->line)) continue;
        if (line->prefix.quoteEnd != item.prefix.quoteEnd) break;
        if (line->prefix.indent() >= item.prefix.indent()) continue;
        if (!line->prefix.isItem()) break;
        return line;
    }
    return std::nullopt;
}

// The item before at the same depth, which may take `item` below itself.
std::optional<Item> siblingBefore(std::string_view text, const Item& item) {
    for (auto line = previous(text, item); line; line = previous(text, *line)) {
        if (isBlank(line->line)) continue;
        if (line->prefix.quoteEnd != item.prefix.quoteEnd) break;
        if (line->prefix.indent() > item.prefix.indent()) continue;
        const bool isSibling =
            line->prefix.isItem() && line->prefix.indent() == item.prefix.indent();
        return isSibling ? line : std::nullopt;
    }
    return std::nullopt;
}

// The number an ordered item gets at another depth.
int numberAt(std::string_view text, const Item& item, std::size_t indent) {
    for (auto line = previous(text, item); line; line = previous(text, *line)) {
        if (isBlank(line->line) || line->prefix.indent() > indent) continue;
        const bool isBefore = line->prefix.isOrdered() && line->prefix.indent() == indent &&
                              line->prefix.mark == item.prefix.mark;
        return isBefore ? line->prefix.number + 1 : 1;
    }
    return 1;
}

void moveLine(EditList& edits, const Item& item, std::size_t from, std::size_t to) {
    const auto edge = item.range.begin + item.prefix.quoteEnd;
    if (to >= from) {
        edits.insert(edge, std::string(to - from, ' '));
    } else {
        edits.remove(edge, edge + std::min(from - to, item.prefix.indent()));
    }
}

std::optional<TextEdit> shifted(std::string_view text,
                                const Selection& selection,
                                const Item& first,
                                std::size_t indent) {
    const auto old = first.prefix.indent();
    if (indent == old) return TextEdit{{0, 0}, {}, selection};
    EditList edits;
    for (std::optional<Item> line = first; line; line = next(text, *line)) {
        const bool isSelected =
            line->range.begin == first.range.begin || line->range.begin < selection.end();
        if (!isSelected) break;
        if (!isBlank(line->line)) moveLine(edits, *line, old, indent);
    }
    const bool isAlone = first.range.end >= selection.end();
    if (isAlone && first.prefix.isOrdered()) {
        const auto begin = first.range.begin + first.prefix.indentEnd;
        edits.replace(begin, first.range.begin + first.prefix.markEnd,
                      first.prefix.markText(first.line, numberAt(text, first, indent)));
    }
    return edits.toEdit(text, selection);
}

// Takes the innermost of what the line goes on with.
TextEdit ended(std::string_view text, const Item& item, std::size_t cursor) {
    const auto& prefix = item.prefix;
    if (prefix.isItem() && prefix.indent() > 0) {
        if (const auto out = indented(text, Selection::at(cursor), Depth::shallower)) return *out;
    }
    const auto begin = item.range.begin + (prefix.isItem() ? prefix.quoteEnd : 0);
    return {{begin, item.range.end}, {}, Selection::at(begin)};
}

}  // namespace

std::optional<TextEdit> lineEnded(std::string_view text, const Selection& selection) {
    const auto item = itemAt(text, selection.begin());
    const auto& prefix = item.prefix;
    const auto cursor = selection.begin() - item.range.begin;
    if (!prefix.isItem() && !prefix.isQuote()) return std::nullopt;
    const bool isEmpty = isBlank(item.line.substr(prefix.end));
    if (selection.isEmpty() && isEmpty && cursor >= prefix.indentEnd) {
        return ended(text, item, selection.cursor);
    }
    if (cursor < (prefix.isItem() ? prefix.end : prefix.quoteEnd)) return std::nullopt;
    EditList edits;
    const auto following = prefix.isOrdered() ? followers(text, item) : std::vector<Item>{};
    const int number = prefix.isOrdered() ? numberAfter(item, following) : 0;
    const auto rest = std::min(text.find_first_not_of(" \t", selection.end()), text.size());
    edits.replace(selection.begin(), rest, "\n" + nextPrefix(item, number));
    const bool isWithin = selection.end() <= item.range.end;
    if (isWithin && number > prefix.number) renumber(edits, following, number + 1);
    auto edit = edits.toEdit(text, Selection::at(selection.end()));
    edit.selection = Selection::at(selection.begin() + 1 + nextPrefix(item, number).size());
    return edit;
}

std::optional<TextEdit> indented(std::string_view text, const Selection& selection, Depth depth) {
    const auto first = itemAt(text, selection.begin());
    if (!first.prefix.isItem()) return std::nullopt;
    auto indent = first.prefix.indent();
    if (depth == Depth::deeper) {
        if (const auto sibling = siblingBefore(text, first)) {
            indent = sibling->prefix.contentColumn();
        }
    } else if (indent > 0) {
        const auto parent = parentOf(text, first);
        indent = parent ? parent->prefix.indent() : 0;
    }
    return shifted(text, selection, first, indent);
}

}  // namespace corvel::editing
