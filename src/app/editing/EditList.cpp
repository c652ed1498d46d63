#include "app/editing/EditList.h"

#include <algorithm>
#include <utility>

namespace corvel::editing {

void EditList::insert(std::size_t position, std::string text) {
    replace(position, position, std::move(text));
}

void EditList::remove(std::size_t begin, std::size_t end) {
    replace(begin, end, {});
}

void EditList::replace(std::size_t begin, std::size_t end, std::string text) {
    m_changes.push_back({{begin, end}, std::move(text)});
}

// What is inserted where something else is removed stands before it.
std::vector<EditList::Change> EditList::inOrder() const {
    auto changes = m_changes;
    std::ranges::stable_sort(changes, {}, [](const Change& change) {
        return std::pair(change.range.begin, change.range.end);
    });
    return changes;
}

std::size_t EditList::moved(const std::vector<Change>& changes, std::size_t position, Side side) {
    std::size_t result = position;
    for (const auto& [range, replacement] : changes) {
        if (range.begin > position) break;
        const bool isPassed =
            range.end < position || (range.end == position && side == Side::after);
        if (isPassed) {
            result = result + replacement.size() - (range.end - range.begin);
        } else {
            // Inside of what is replaced: to its start, or behind the new text.
            result -= position - range.begin;
            if (side == Side::after && range.begin < position) result += replacement.size();
        }
    }
    return result;
}

TextEdit EditList::toEdit(std::string_view text, const Selection& selection) const {
    const auto changes = inOrder();
    TextEdit edit{{changes.front().range.begin, changes.front().range.begin}, {}, {}};
    for (const auto& [range, replacement] : changes) {
        edit.replacement += text.substr(edit.range.end, range.begin - edit.range.end);
        edit.replacement += replacement;
        edit.range.end = range.end;
    }
    const bool isForward = selection.anchor <= selection.cursor;
    const auto first = moved(changes, selection.begin(), Side::after);
    const auto last =
        moved(changes, selection.end(), selection.isEmpty() ? Side::after : Side::before);
    edit.selection = isForward ? Selection{first, last} : Selection{last, first};
    return edit;
}

}  // namespace corvel::editing
