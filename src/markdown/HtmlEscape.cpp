#include "markdown/HtmlEscape.h"

#include <glib.h>

#include <cstddef>
#include <cstdint>

namespace corvel {

namespace {

bool isMarkup(char character) {
    return (character == '&') | (character == '<') | (character == '>') | (character == '"');
}

// Most text has none: looked for by the block, in a loop that the compiler makes vector code of.
std::size_t findMarkup(std::string_view text, std::size_t from) {
    constexpr std::size_t kBlock = 16;
    for (; text.size() - from >= kBlock; from += kBlock) {
        std::uint8_t found = 0;
        for (std::size_t i = 0; i < kBlock; ++i)
            found = static_cast<std::uint8_t>(found | static_cast<int>(isMarkup(text[from + i])));
        if (found != 0) break;
    }
    while (from < text.size() && !isMarkup(text[from]))
        ++from;
    return from;
}

std::string_view entityOf(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        default:
            return "&quot;";
    }
}

}  // namespace

void appendEscaped(std::string& output, std::string_view text) {
    std::size_t copied = 0;
    for (auto at = findMarkup(text, 0); at < text.size(); at = findMarkup(text, copied)) {
        output.append(text, copied, at - copied);
        output.append(entityOf(text[at]));
        copied = at + 1;
    }
    output.append(text, copied);
}

std::string styleText(std::string_view css) {
    constexpr std::string_view kEnd = "</style";
    constexpr std::string_view kReplacement = "\xef\xbf\xbd";  // U+FFFD, as CSS itself reads a NUL
    std::string text;
    text.reserve(css.size());
    for (std::size_t i = 0; i < css.size(); ++i) {
        const auto rest = css.substr(i, kEnd.size());
        const bool isEnd = rest.size() == kEnd.size() &&
                           g_ascii_strncasecmp(rest.data(), kEnd.data(), kEnd.size()) == 0;
        text += css[i] == '\0' ? kReplacement : css.substr(i, 1);
        if (isEnd) text += '\\';
    }
    return text;
}

}  // namespace corvel
