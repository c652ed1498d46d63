#include "export/epub/BookParts.h"

#include "export/epub/XmlText.h"

#include <ctime>

namespace corvel::bookparts {

namespace {

/// ISO 8601 in UTC, whole seconds: "2024-03-05T14:07:09Z".
std::string timestamp(const Date& date) {
    const std::time_t seconds = date.seconds();
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::string text(32, '\0');
    text.resize(std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts));
    return text;
}

std::string navigationPoint(std::size_t number, std::string_view title, std::string_view target) {
    const std::string n = std::to_string(number);
    return "    <navPoint id=\"navpoint-" + n + "\" playOrder=\"" + n +
           "\">\n        <navLabel><text>" + xmlEscaped(title) +
           "</text></navLabel>\n        <content src=\"chapter1.xhtml" + std::string(target) +
           "\"/>\n    </navPoint>";
}

std::string navigationPoints(const BookRecord& book) {
    if (book.contents.empty()) return navigationPoint(1, book.title, "");
    std::string points;
    std::size_t number = 0;
    for (const auto& entry : book.contents) {
        if (number++ > 0) points += '\n';
        points += navigationPoint(number, entry.title, "#" + xmlEscaped(entry.id));
    }
    return points;
}

}  // namespace

std::string_view mimetype() {
    return "application/epub+zip";
}

std::string_view container() {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<container version="1.0" xmlns="urn:oasis:names:tc:opendocument:xmlns:container">
    <rootfiles>
        <rootfile full-path="OEBPS/content.opf" media-type="application/oebps-package+xml"/>
    </rootfiles>
</container>)";
}

std::string package(const BookRecord& book) {
    const std::string modified = timestamp(book.modifiedAt);
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<package xmlns="http://www.idpf.org/2007/opf" version="3.0" unique-identifier="uid">
    <metadata xmlns:dc="http://purl.org/dc/elements/1.1/">
        <dc:identifier id="uid">urn:uuid:)" +
           book.uuid + R"(</dc:identifier>
        <dc:title>)" +
           xmlEscaped(book.title) + R"(</dc:title>
        <dc:language>en</dc:language>
        <dc:date>)" +
           modified + R"(</dc:date>
        <dc:creator>qno Corvel</dc:creator>
        <meta property="dcterms:modified">)" +
           modified + R"(</meta>
    </metadata>
    <manifest>
        <item id="nav" href="nav.xhtml" media-type="application/xhtml+xml" properties="nav"/>
        <item id="ncx" href="toc.ncx" media-type="application/x-dtbncx+xml"/>
        <item id="chapter1" href="chapter1.xhtml" media-type="application/xhtml+xml"/>
        <item id="style" href="styles/style.css" media-type="text/css"/>
    </manifest>
    <spine toc="ncx">
        <itemref idref="chapter1"/>
    </spine>
</package>)";
}

std::string ncx(const BookRecord& book) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<ncx xmlns="http://www.daisy.org/z3986/2005/ncx/" version="2005-1">
    <head>
        <meta name="dtb:uid" content="urn:uuid:)" +
           book.uuid + R"("/>
    </head>
    <docTitle><text>)" +
           xmlEscaped(book.title) + R"(</text></docTitle>
    <navMap>
)" + navigationPoints(book) +
           R"(
    </navMap>
</ncx>)";
}

std::string navigation(const BookRecord& book) {
    std::string page = R"(<?xml version="1.0" encoding="utf-8"?>
<html xmlns="http://www.w3.org/1999/xhtml" xmlns:epub="http://www.idpf.org/2007/ops">
<head>
    <meta charset="utf-8"/>
    <title>Table of Contents</title>
</head>
<body>
    <nav epub:type="toc" id="toc">
        <h1>Table of Contents</h1>
        <ol>
)";
    for (const auto& entry : book.contents) {
        page += "            <li><a href=\"chapter1.xhtml#" + xmlEscaped(entry.id) + "\">" +
                xmlEscaped(entry.title) + "</a></li>\n";
    }
    return page += R"(
        </ol>
    </nav>
</body>
</html>)";
}

std::string chapter(std::string_view body) {
    constexpr std::string_view kHead = R"(<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE html>
<html xmlns="http://www.w3.org/1999/xhtml">
<head>
    <meta charset="utf-8"/>
    <link rel="stylesheet" type="text/css" href="styles/style.css"/>
</head>
<body>
    )";
    constexpr std::string_view kEnd = "\n</body>\n</html>";
    std::string page;
    page.reserve(kHead.size() + body.size() + kEnd.size());
    return page.append(kHead).append(body).append(kEnd);
}

std::string_view plainStylesheet() {
    return R"(body {
    font-family: Georgia, serif;
    font-size: 1em;
    line-height: 1.6;
    color: #333;
    margin: 1em;
}
h1 { font-size: 1.8em; margin-top: 1em; }
h2 { font-size: 1.4em; margin-top: 0.8em; }
h3 { font-size: 1.2em; margin-top: 0.6em; }
code { font-family: monospace; background: #f5f5f5; padding: 2px 4px; }
pre { background: #f5f5f5; padding: 1em; overflow-x: auto; }
pre code { background: none; padding: 0; }
blockquote { border-left: 3px solid #ccc; padding-left: 1em; color: #666; }
img { max-width: 100%; })";
}

}  // namespace corvel::bookparts
