#include "library/NoteText.h"

#include "library/Excerpt.h"
#include "library/Lines.h"
#include "library/TagScanner.h"
#include "platform/Text.h"

namespace corvel {

namespace {

constexpr std::size_t kTitleLength = 100;
constexpr std::size_t kExcerptWindow = 8 * 1024;
constexpr std::string_view kHeadingMark = "# ";

struct TitleLine {
    std::string_view line;
    bool isHeading = false;
};

TitleLine titleLineOf(std::string_view content) {
    TitleLine first;
    Lines lines(content);
    for (std::string_view line; lines.next(line);) {
        line = trimmed(line);
        if (line.starts_with(kHeadingMark)) return {line, true};
        if (first.line.empty()) first.line = line;
    }
    return first;
}

}  // namespace

std::string titleFromContent(std::string_view content) {
    const auto [line, isHeading] = titleLineOf(content);
    if (isHeading) return std::string(line.substr(kHeadingMark.size()));
    if (line.empty()) return "Untitled";
    return std::string(text::prefixByGraphemes(line, kTitleLength));
}

std::vector<std::string> tagPathsIn(std::string_view content) {
    return TagScanner(content).paths();
}

std::string excerptOf(std::string_view content) {
    const auto start = text::prefixByBytes(content, kExcerptWindow);
    const auto title = titleLineOf(start).line;
    Excerpt excerpt;
    Lines lines(start);
    for (std::string_view line; !excerpt.isFull() && lines.next(line);) {
        line = trimmed(line);
        if (line.data() != title.data()) excerpt.addLine(line);
    }
    return excerpt.take();
}

}  // namespace corvel
