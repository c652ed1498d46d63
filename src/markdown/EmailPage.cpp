#include "markdown/EmailPage.h"

#include "markdown/EmailInlineStyles.h"
#include "markdown/HtmlEscape.h"
#include "markdown/MarkdownParserService.h"

#include <array>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace corvel {

namespace {

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html>
<head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <title>)";

constexpr std::string_view kBodyStyle = R"(</title>
</head>
<body style="margin:0;padding:0;background-color:#f5f5f5;font-family:')";

constexpr std::string_view kFallbackFonts =
    "', -apple-system, BlinkMacSystemFont, 'Segoe UI', Helvetica, Arial, sans-serif";

constexpr std::string_view kLayout = R"(;color:#1A1A1A;">
    <div style="max-width:680px;margin:0 auto;padding:32px 24px;background-color:#ffffff;">
        )";

constexpr std::string_view kClosing = "\n    </div>\n</body>\n</html>";

// Wide enough for the longest double written without an exponent.
using NumberBuffer = std::array<char, 400>;

std::string wholePixels(double size) {
    NumberBuffer digits{};
    // Adding zero turns -0 into 0.
    const auto end = std::to_chars(digits.begin(), digits.end(), std::trunc(size) + 0.0,
                                   std::chars_format::fixed, 0);
    return {digits.data(), end.ptr};
}

// The shortest form that reads back equal, always with a fraction or an exponent.
std::string shortestDecimal(double number) {
    NumberBuffer digits{};
    const double magnitude = std::abs(number);
    const bool isPlain = number == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::to_chars(digits.begin(), digits.end(), number, format);
    std::string text(digits.data(), end.ptr);
    if (isPlain && text.find('.') == std::string::npos) text += ".0";
    return text;
}

}  // namespace

std::string emailPage(std::string_view title, std::string_view body, const EmailStyle& style) {
    if (!std::isfinite(style.fontSize)) throw std::invalid_argument("font size is not finite");
    std::string page(kHead);
    appendEscaped(page, title);
    page.append(kBodyStyle).append(style.bodyFont).append(kFallbackFonts);
    page.append(";font-size:").append(wholePixels(style.fontSize));
    page.append("px;line-height:").append(shortestDecimal(style.lineHeight)).append(kLayout);
    page.append(withInlineStyles(std::string(body), style.codeFont)).append(kClosing);
    return page;
}

}  // namespace corvel
