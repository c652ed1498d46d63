#include "export/ExportFileName.h"
#include "export/HTMLExporter.h"
#include "platform/UserDefaults.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <gtest/gtest.h>

#include <optional>

namespace corvel {
namespace {

std::string exported(const Note& note, const ExportOptions& options) {
    const MarkdownParserService parser;
    HTMLExporter exporter{NoteBody(parser, nullptr, GuardedRenderer())};
    std::optional<ExportOutcome> outcome;
    exporter.exportNote(note, options, themes::builtInDark(), Gio::Cancellable::create(),
                        [&](ExportOutcome result) { outcome = std::move(result); });
    EXPECT_FALSE(outcome.has_value()) << "never before the function returns";
    EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }));
    if (const auto* error = std::get_if<ExportError>(&*outcome)) {
        return "error " + std::to_string(static_cast<int>(error->kind()));
    }
    return std::get<std::string>(*outcome);
}

Note noteWith(const std::string& title, const std::string& content) {
    Note note;
    note.title = title;
    note.content = content;
    return note;
}

TEST(HTMLExporter, WritesThePageByteForByte) {
    const std::string page = exported(noteWith("A <b> & c", "# Hi\n"),
                                      {.format = ExportFormat::html, .applyTheme = false});
    EXPECT_EQ(
        page,
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n    <meta charset=\"utf-8\">\n    "
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n    "
        "<title>A &lt;b&gt; &amp; c</title>\n    <style></style>\n    <style>\n        body { "
        "max-width: 800px; margin: 0 auto; padding: 40px 20px; }\n        @media (max-width: "
        "600px) { body { padding: 20px 16px; } }\n        html { scroll-behavior: smooth; "
        "}\n    </style>\n</head>\n<body>\n    <h1 id=\"hi\"><a name=\"hi\"></a>Hi</h1>\n\n   "
        " <script>\n        document.addEventListener('click', function(e) {\n            var "
        "link = e.target.closest('a[href^=\"#\"]');\n            if (!link) return;\n         "
        "   var id = decodeURIComponent(link.getAttribute('href').substring(1));\n            "
        "var target = document.getElementById(id);\n            if (target) {\n               "
        " e.preventDefault();\n                target.scrollIntoView({ behavior: 'smooth' "
        "});\n            }\n        });\n    </script>\n</body>\n</html>");
}

TEST(HTMLExporter, EmbedsImagesAndTheThemeOnlyWhenAsked) {
    const Note note =
        noteWith("", "![a](attachment://4A8F1C52-6B0E-4C7D-9E1A-0123456789AB){width=9px}");
    const std::string plain = exported(note, {.applyTheme = false, .embedImages = false});
    EXPECT_NE(plain.find("alt=\"a\">{width=9px}"), std::string::npos);
    const std::string full = exported(note, {});
    EXPECT_NE(full.find("style=\"width:9px;\">"), std::string::npos);
    EXPECT_NE(full.find("<style>" + generateCSS(themes::builtInDark()) + "</style>"),
              std::string::npos);
}

TEST(HTMLExporter, EmbedsWhatLiesBesideTheFileOfALinkedNote) {
    const TemporaryFolder folder;
    folder.write("pic.gif", "GIF89a;");
    Note note = noteWith("", "![a](pic.gif)");
    EXPECT_NE(exported(note, {}).find("src=\"pic.gif\""), std::string::npos);
    note.sourceFilePath = (folder.path() / "note.md").string();
    EXPECT_NE(exported(note, {}).find("src=\"data:image/gif;base64,R0lGODlhOw==\""),
              std::string::npos);
    EXPECT_NE(exported(note, {.embedImages = false}).find("src=\"pic.gif\""), std::string::npos);
}

TEST(HTMLExporter, SaysWhenTheTitleIsNoText) {
    EXPECT_EQ(exported(noteWith("\xff\xfe", "x"), {}),
              "error " + std::to_string(static_cast<int>(ExportError::Kind::encodingFailed)));
}

TEST(HTMLExporter, SaysWhenTheTextTakesTooLong) {
    std::string openers;
    for (int i = 0; i < 100'000; ++i)
        openers += "![[]()";
    EXPECT_EQ(exported(noteWith("", openers), {}),
              "error " + std::to_string(static_cast<int>(ExportError::Kind::tooComplex)));
}

TEST(ExportFileName, OffersTheTitleAsItStands) {
    EXPECT_EQ(suggestedFileName("", ExportFormat::epub), "Untitled.epub");
    EXPECT_EQ(suggestedFileName("Plan 2024", ExportFormat::txt), "Plan 2024.txt");
    EXPECT_EQ(suggestedFileName("a/b: c?", ExportFormat::pdf), "a/b: c?.pdf");
}

TEST(ExportFileName, MakesNamesThatLieInOneFolder) {
    ExportFileNames names(ExportFormat::html);
    EXPECT_EQ(names.next("a/b: c?"), "a-b: c?.html");
    EXPECT_EQ(names.next("A-B: c?"), "A-B: c? 2.html");
    EXPECT_EQ(names.next(".."), "Untitled.html");
    EXPECT_EQ(names.next(""), "Untitled 2.html");
    const std::string name = names.next(std::string(200, 'x') + std::string(100, '\xc5') + "ż");
    EXPECT_LE(name.size(), 255U);
    EXPECT_TRUE(name.ends_with(".html"));
}

}  // namespace
}  // namespace corvel
