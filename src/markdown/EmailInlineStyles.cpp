#include "markdown/EmailInlineStyles.h"

#include "markdown/PatternSpace.h"
#include "markdown/TagStyler.h"

#include <utility>
#include <vector>

namespace corvel {

namespace {

using StyleRow = std::pair<std::string_view, std::string>;

std::vector<StyleRow> styleTable(const std::string& codeFont) {
    const std::string heading = "font-weight:600;margin-top:1.5em;margin-bottom:0.5em";
    const std::string ruled = heading + ";border-bottom:1px solid #F0F0F0;padding-bottom:0.3em";
    const std::string cell = "border:1px solid #E0E0E0;padding:8px 12px;text-align:left";
    return {
        {"h1", "color:#111111;font-size:2em;" + ruled},
        {"h2", "color:#111111;font-size:1.5em;" + ruled},
        {"h3", "color:#111111;font-size:1.25em;" + heading},
        {"h4", "color:#111111;font-size:1.1em;" + heading},
        {"h5", "color:#111111;font-size:1em;" + heading},
        {"h6", "color:#111111;font-size:0.9em;" + heading},
        {"p", "margin:1em 0"},
        {"a", "color:#007AFF;text-decoration:none"},
        {"code",
         "font-family:'" + codeFont +
             "', 'SF Mono', Menlo, Consolas, monospace;background-color:#F0F0F0;color:#D63384;"
             "padding:2px 6px;border-radius:4px;font-size:0.9em"},
        {"pre",
         "background-color:#F0F0F0;padding:16px;border-radius:8px;overflow-x:auto;margin:1em 0"},
        {"blockquote",
         "border-left:4px solid #007AFF;color:#555555;margin:1em 0;padding:0.5em 1em"},
        {"table", "border-collapse:collapse;width:100%;margin:1em 0"},
        {"th", cell + ";font-weight:600;background-color:#F8F8F8"},
        {"td", cell},
        {"img", "max-width:100%;height:auto;border-radius:4px;display:block;margin:12px 0"},
        {"hr", "border:none;border-top:1px solid #E0E0E0;margin:2em 0"},
        {"ul", "padding-left:2em"},
        {"ol", "padding-left:2em"},
        {"li", "margin:0.25em 0"},
    };
}

constexpr std::string_view kBlockCodeStyle =
    "background:none;padding:0;color:#1A1A1A;font-size:0.9em";

// Code in a code block loses the look of inline code: in each match of
// "(<pre[^>]*>\s*<code) style=\"[^\"]*\"" the style is replaced.
std::string withPlainCodeBlocks(const std::string& html) {
    constexpr std::string_view kCode = "<code style=\"";
    const std::string_view text = html;
    std::string output;
    std::size_t copied = 0;
    for (std::size_t pre = text.find("<pre"); pre != std::string_view::npos;) {
        const std::size_t close = text.find('>', pre);
        if (close == std::string_view::npos) break;
        std::size_t next = close + 1;
        const std::size_t code = skipSpaces(text, next);
        if (text.substr(code, kCode.size()) == kCode) {
            const std::size_t value = code + kCode.size();
            const std::size_t end = text.find('"', value);
            if (end == std::string_view::npos) break;
            output.append(text, copied, value - copied).append(kBlockCodeStyle);
            copied = end;
            next = end + 1;
        }
        pre = text.find("<pre", next);
    }
    return output.append(text, copied);
}

}  // namespace

std::string withInlineStyles(std::string html, const std::string& codeFont) {
    for (const auto& [tag, style] : styleTable(codeFont)) {
        html = TagStyler(tag, style).apply(std::move(html));
    }
    return withPlainCodeBlocks(html);
}

}  // namespace corvel
