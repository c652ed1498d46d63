#include "export/pdf/PrintPage.h"

#include "markdown/HtmlEscape.h"

namespace corvel {

std::string printPage(PageSize size,
                      std::string_view title,
                      std::string_view css,
                      std::string_view body) {
    std::string page;
    page.reserve(body.size() + css.size() + title.size() + 1024);
    page += R"(<!DOCTYPE html>
<html>
<head>
    <meta charset="utf-8">
    <style>
        @page {
            size: )";
    page += dimensions(size).name;
    page += R"(;
            margin: 2cm;
            @top-center { content: ")";
    appendEscaped(page, title);
    page += R"("; font-size: 10px; color: #888; }
            @bottom-center { content: counter(page); font-size: 10px; color: #888; }
        }
        )";
    page += styleText(css);
    page += R"(
        body { margin: 0; padding: 0; }
    </style>
</head>
<body>
    )";
    page += body;
    return page += "\n</body>\n</html>";
}

std::string_view plainPrintStylesheet() {
    return R"(body {
    font-family: -apple-system, BlinkMacSystemFont, sans-serif;
    font-size: 14px;
    line-height: 1.6;
    color: #1a1a1a;
    max-width: 100%;
}
h1, h2, h3 { margin-top: 1.5em; }
code { font-family: 'SF Mono', Menlo, monospace; background: #f0f0f0; padding: 2px 4px; border-radius: 3px; }
pre { background: #f0f0f0; padding: 12px; border-radius: 6px; overflow-x: auto; }
pre code { background: none; padding: 0; }
blockquote { border-left: 3px solid #007AFF; padding-left: 1em; color: #555; }
table { border-collapse: collapse; width: 100%; }
th, td { border: 1px solid #ddd; padding: 8px; }
img { max-width: 100%; })";
}

}  // namespace corvel
