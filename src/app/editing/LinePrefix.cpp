#include "app/editing/LinePrefix.h"

#include <algorithm>

namespace corvel::editing {

namespace {

std::size_t skip(std::string_view line, std::size_t from, std::string_view characters) {
    return std::min(line.find_first_not_of(characters, from), line.size());
}

std::size_t endOfQuotes(std::string_view line) {
    std::size_t end = 0;
    while (true) {
        const auto mark = skip(line, end, " ");
        if (mark - end > 3 || mark == line.size() || line[mark] != '>') return end;
        end = mark + 1;
        if (end < line.size() && line[end] == ' ') ++end;
    }
}

void readMark(std::string_view line, LinePrefix& prefix) {
    auto at = prefix.indentEnd;
    const auto digits = skip(line, at, "0123456789") - at;
    if (digits > 9) return;
    const auto mark = at + digits;
    const std::string_view marks = digits > 0 ? ".)" : "-*+";
    if (mark >= line.size() || marks.find(line[mark]) == marks.npos) return;
    const auto end = skip(line, mark + 1, " \t");
    if (end == mark + 1) return;
    prefix.mark = line[mark];
    if (digits > 0) prefix.number = std::stoi(std::string(line.substr(at, digits)));
    prefix.markEnd = end;
}

std::size_t endOfBox(std::string_view line, std::size_t at) {
    const auto box = line.substr(at, 3);
    const bool isBox = box.size() == 3 && box[0] == '[' && box[2] == ']' &&
                       (box[1] == ' ' || box[1] == 'x' || box[1] == 'X');
    if (!isBox) return at;
    const auto end = skip(line, at + 3, " \t");
    return end == at + 3 && end < line.size() ? at : end;
}

}  // namespace

LinePrefix LinePrefix::of(std::string_view line) {
    LinePrefix prefix;
    prefix.quoteEnd = endOfQuotes(line);
    prefix.indentEnd = skip(line, prefix.quoteEnd, " \t");
    prefix.markEnd = prefix.indentEnd;
    readMark(line, prefix);
    prefix.end = prefix.isItem() ? endOfBox(line, prefix.markEnd) : prefix.markEnd;
    return prefix;
}

std::string LinePrefix::markText(std::string_view line, int otherNumber) const {
    const auto old = line.substr(indentEnd, markEnd - indentEnd);
    return std::to_string(otherNumber) + std::string(old.substr(old.find(mark)));
}

}  // namespace corvel::editing
