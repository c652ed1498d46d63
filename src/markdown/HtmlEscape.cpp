#include "markdown/HtmlEscape.h"

#include <glib.h>

#include <array>

namespace corvel {

namespace {

constexpr std::array<bool, 256> kIsMarkup = [] {
    std::array<bool, 256> table{};
    for (const char character : {'&', '<', '>', '"'})
        table[static_cast<unsigned char>(character)] = true;
    return table;
}();

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
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!kIsMarkup[static_cast<unsigned char>(text[i])]) continue;
        output.append(text, copied, i - copied);
        output.append(entityOf(text[i]));
        copied = i + 1;
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
