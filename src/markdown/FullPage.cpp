#include "markdown/FullPage.h"

#include "markdown/HtmlEscape.h"

namespace corvel {

namespace {

constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
    <meta charset="utf-8">
    <meta name="viewport" content="width=device-width, initial-scale=1">
    <title>)";

constexpr std::string_view kLayout = R"(</style>
    <style>
        body { max-width: 800px; margin: 0 auto; padding: 40px 20px; }
        @media (max-width: 600px) { body { padding: 20px 16px; } }
        html { scroll-behavior: smooth; }
    </style>
</head>
<body>
)";

constexpr std::string_view kClosing = R"(
    <script>
        document.addEventListener('click', function(e) {
            var link = e.target.closest('a[href^="#"]');
            if (!link) return;
            var id = decodeURIComponent(link.getAttribute('href').substring(1));
            var target = document.getElementById(id);
            if (target) {
                e.preventDefault();
                target.scrollIntoView({ behavior: 'smooth' });
            }
        });
    </script>
</body>
</html>)";

}  // namespace

std::string fullPage(std::string_view title, std::string_view css, std::string_view body) {
    std::string page(kHead);
    page.reserve(kHead.size() + kLayout.size() + kClosing.size() + 2 * title.size() + css.size() +
                 body.size() + 64);
    appendEscaped(page, title);
    page.append("</title>\n    <style>")
        .append(styleText(css))
        .append(kLayout)
        .append(body)
        .append(kClosing);
    return page;
}

}  // namespace corvel
