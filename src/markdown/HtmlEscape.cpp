#include "markdown/HtmlEscape.h"

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

}  // namespace corvel
