#include "themes/ThemeStylesheet.h"

#include "platform/Log.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <string_view>

namespace corvel {

namespace {

constexpr std::size_t kUsualLength = 1795;  // bytes
constexpr double kTwoTo63 = 9223372036854775808.0;

std::string wholePixels(double size) {
    // Also false for a NaN.
    if (!(size >= -kTwoTo63 && size < kTwoTo63))
        fatalStop("The theme's font size is not a number that fits.");
    return std::to_string(static_cast<std::int64_t>(size));
}

/// The shortest text that reads back as the same number, always with a fractional part.
std::string decimal(double value) {
    std::array<char, 512> text{};  // the longest of all doubles takes 328 characters in this form
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr;
    std::string result(text.data(), end);
    if (std::isfinite(value) && result.find('.') == std::string::npos) result += ".0";
    return result;
}

}  // namespace

std::string generateCSS(const Theme& theme) {
    const ThemeColors& colors = theme.colors;
    const ThemeTypography& type = theme.typography;
    const std::string fontSize = wholePixels(type.baseFontSize);
    const std::string lineHeight = decimal(type.lineHeight);

    const std::initializer_list<std::string_view> pieces{
        // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): one line of CSS a literal
        ":root {\n"
        "    --bg: ",
        colors.background,
        ";\n"
        "    --fg: ",
        colors.foreground,
        ";\n"
        "    --accent: ",
        colors.accent,
        ";\n"
        "    --heading: ",
        colors.heading,
        ";\n"
        "    --link: ",
        colors.link,
        ";\n"
        "    --code-bg: ",
        colors.codeBackground,
        ";\n"
        "    --code-fg: ",
        colors.codeForeground,
        ";\n"
        "    --quote-border: ",
        colors.blockquoteBorder,
        ";\n"
        "    --quote-text: ",
        colors.blockquoteText,
        ";\n"
        "    --selection: ",
        colors.selection,
        ";\n"
        "}\n"
        "body {\n"
        "    font-family: '",
        type.fontFamily,
        "', -apple-system, BlinkMacSystemFont, sans-serif;\n"
        "    font-size: ",
        fontSize,
        "px;\n"
        "    line-height: ",
        lineHeight,
        ";\n"
        "    color: ",
        colors.foreground,
        ";\n"
        "    background-color: ",
        colors.background,
        ";\n"
        "    margin: 0;\n"
        "    padding: 20px 32px;\n"
        "    -webkit-font-smoothing: antialiased;\n"
        "}\n"
        "h1, h2, h3, h4, h5, h6 {\n"
        "    color: ",
        colors.heading,
        ";\n"
        "    margin-top: 1.5em;\n"
        "    margin-bottom: 0.5em;\n"
        "    font-weight: 600;\n"
        "}\n"
        "h1 { font-size: 2em; border-bottom: 1px solid ",
        colors.codeBackground,
        "; padding-bottom: 0.3em; }\n"
        "h2 { font-size: 1.5em; border-bottom: 1px solid ",
        colors.codeBackground,
        "; padding-bottom: 0.3em; }\n"
        "h3 { font-size: 1.25em; }\n"
        "h4 { font-size: 1.1em; }\n"
        "a { color: ",
        colors.link,
        "; text-decoration: none; }\n"
        "a:hover { text-decoration: underline; }\n"
        "code {\n"
        "    font-family: '",
        type.monoFontFamily,
        "', 'SF Mono', Menlo, monospace;\n"
        "    background-color: ",
        colors.codeBackground,
        ";\n"
        "    color: ",
        colors.codeForeground,
        ";\n"
        "    padding: 2px 6px;\n"
        "    border-radius: 4px;\n"
        "    font-size: 0.9em;\n"
        "}\n"
        "pre {\n"
        "    background-color: ",
        colors.codeBackground,
        ";\n"
        "    padding: 16px;\n"
        "    border-radius: 8px;\n"
        "    overflow-x: auto;\n"
        "}\n"
        "pre code {\n"
        "    background: none;\n"
        "    padding: 0;\n"
        "    color: ",
        colors.foreground,
        ";\n"
        "}\n"
        "blockquote {\n"
        "    border-left: 4px solid ",
        colors.blockquoteBorder,
        ";\n"
        "    color: ",
        colors.blockquoteText,
        ";\n"
        "    margin: 1em 0;\n"
        "    padding: 0.5em 1em;\n"
        "}\n"
        "table {\n"
        "    border-collapse: collapse;\n"
        "    width: 100%;\n"
        "    margin: 1em 0;\n"
        "}\n"
        "th, td {\n"
        "    border: 1px solid ",
        colors.codeBackground,
        ";\n"
        "    padding: 8px 12px;\n"
        "    text-align: left;\n"
        "}\n"
        "th { font-weight: 600; }\n"
        "img { max-width: 100%; border-radius: 4px; }\n"
        "hr { border: none; border-top: 1px solid ",
        colors.codeBackground,
        "; margin: 2em 0; }\n"
        "ul, ol { padding-left: 2em; }\n"
        "li { margin: 0.25em 0; }\n"
        ".task-list-item {\n"
        "    list-style: none;\n"
        "    margin-left: -1.5em;\n"
        "}\n"
        ".task-list-item input[type=\"checkbox\"] {\n"
        "    margin-right: 0.5em;\n"
        "}\n"
        "::selection {\n"
        "    background-color: ",
        colors.selection,
        ";\n"
        "}"};
    std::size_t length = 0;
    for (const std::string_view piece : pieces)
        length += piece.size();

    std::string css;
    css.reserve(std::max(kUsualLength, length));
    for (const std::string_view piece : pieces)
        css += piece;
    return css;
}

}  // namespace corvel
