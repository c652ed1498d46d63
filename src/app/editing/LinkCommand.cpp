#include "app/editing/BlockCommands.h"

#include <algorithm>
#include <array>

namespace corvel::editing {

namespace {

constexpr std::string_view kEmptyParagraph = "\n\n";

struct LinkParts {
    TextRange whole;
    TextRange words;
};

bool isAddress(std::string_view text) {
    constexpr std::array<std::string_view, 5> kSchemes{"https://", "http://", "mailto:", "ftp://",
                                                       "file://"};
    if (text.find_first_of(" \t\r\n<>\"") != text.npos) return false;
    return std::ranges::any_of(kSchemes, [text](std::string_view scheme) {
        return text.starts_with(scheme) && text.size() > scheme.size();
    });
}

std::string_view withoutBlankEnds(std::string_view text) {
    constexpr std::string_view kBlank = " \t\r\n";
    const auto begin = text.find_first_not_of(kBlank);
    return begin == text.npos ? std::string_view{}
                              : text.substr(begin, text.find_last_not_of(kBlank) + 1 - begin);
}

// Round brackets end an address unless it stands in angle brackets.
std::string asDestination(std::string_view address) {
    const bool isPlain = address.find_first_of("()") == address.npos;
    return isPlain ? std::string(address) : "<" + std::string(address) + ">";
}

std::string asWords(std::string_view words) {
    std::string escaped;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isBracket = words[i] == '[' || words[i] == ']';
        if (isBracket && (i == 0 || words[i - 1] != '\\')) escaped += '\\';
        escaped += words[i];
    }
    return escaped;
}

// The link of the cursor's line that holds the selection.
std::optional<LinkParts> linkAround(std::string_view text, const Selection& selection) {
    const auto line = lineAt(text, selection.begin());
    for (auto middle = text.find("](", line.begin); middle < line.end;
         middle = text.find("](", middle + 1)) {
        const auto open = middle == 0 ? text.npos : text.rfind('[', middle - 1);
        const auto close = text.find(text.substr(middle).starts_with("](<") ? ">)" : ")", middle);
        if (open == text.npos || open < line.begin || close >= line.end) continue;
        const auto end = close + (text[close] == '>' ? 2 : 1);
        const bool isImage = open > line.begin && text[open - 1] == '!';
        if (!isImage && open <= selection.begin() && selection.end() <= end)
            return LinkParts{{open, end}, {open + 1, middle}};
    }
    return std::nullopt;
}

TextEdit unlinked(std::string_view text, const LinkParts& link) {
    const auto length = link.words.end - link.words.begin;
    return {link.whole,
            std::string(slice(text, link.words)),
            {link.whole.begin, link.whole.begin + length}};
}

// The cursor goes where something is still to be typed: the words, else the address, else behind.
TextEdit linked(TextRange range, const std::string& words, const std::string& address) {
    TextEdit edit{range, "[" + words + "](" + address + ")", {}};
    auto cursor = range.begin + edit.replacement.size();
    if (words.empty()) {
        cursor = range.begin + 1;
    } else if (address.empty()) {
        cursor -= 1;
    }
    edit.selection = Selection::at(cursor);
    return edit;
}

}  // namespace

std::optional<TextEdit> toggledLink(std::string_view text,
                                    const Selection& selection,
                                    std::string_view clipboard) {
    if (const auto link = linkAround(text, selection)) return unlinked(text, *link);
    const TextRange range = selection.isEmpty() ? wordAt(text, selection.cursor)
                                                : TextRange{selection.begin(), selection.end()};
    const auto words = withoutBlankEnds(slice(text, range));
    if (words.find(kEmptyParagraph) != words.npos) return std::nullopt;
    const auto begin =
        range.begin + (words.empty() ? 0 : slice(text, range).find_first_not_of(" \t\r\n"));
    const TextRange place{begin, begin + words.size()};
    if (isAddress(words)) return linked(place, {}, asDestination(words));
    const auto copied = withoutBlankEnds(clipboard);
    return linked(place, asWords(words), isAddress(copied) ? asDestination(copied) : "");
}

}  // namespace corvel::editing
