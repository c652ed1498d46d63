#include "export/EPUBExporter.h"
#include "export/ExportError.h"
#include "export/epub/ChapterMarkup.h"
#include "export/epub/XmlText.h"
#include "platform/Handle.h"
#include "support/FileContent.h"
#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <gtest/gtest.h>
#include <zip.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace corvel {
namespace {

namespace fs = std::filesystem;

Note noteWith(const std::string& title, const std::string& content) {
    Note note;
    note.id = *Uuid::parse("4A8F1C52-6B0E-4C7D-9E1A-0123456789AB");
    note.title = title;
    note.content = content;
    note.modifiedAt = Date::fromSeconds(1709647629);
    return note;
}

std::string bookOf(const Note& note) {
    const MarkdownParserService parser;
    const std::string html =
        parser.postProcessImages(MarkdownParserService::renderBody(note.content));
    return EPUBExporter::book(note, html, generateCSS(themes::builtInLight()));
}

/// A book opened again by the ZIP library.
class OpenBook {
public:
    explicit OpenBook(const std::string& bytes) : m_bytes(bytes) {
        zip_source_t* source = zip_source_buffer_create(m_bytes.data(), m_bytes.size(), 0, nullptr);
        m_archive.reset(zip_open_from_source(source, ZIP_RDONLY, nullptr));
    }

    zip_stat_t entry(zip_uint64_t index) {
        zip_stat_t stat;
        EXPECT_EQ(zip_stat_index(m_archive.get(), index, 0, &stat), 0);
        return stat;
    }
    zip_int64_t count() { return zip_get_num_entries(m_archive.get(), 0); }
    std::string read(const char* path) {
        zip_stat_t stat;
        if (zip_stat(m_archive.get(), path, 0, &stat) != 0) return "no such file";
        std::string text(stat.size, '\0');
        const Handle<zip_file_t, zip_fclose> file(zip_fopen(m_archive.get(), path, 0));
        EXPECT_EQ(zip_fread(file.get(), text.data(), text.size()),
                  static_cast<zip_int64_t>(text.size()));
        return text;
    }

private:
    std::string m_bytes;
    Handle<zip_t, zip_discard> m_archive;
};

TEST(EPUBExporter, WritesTheSevenFilesInOrderTheMimetypeStored) {
    OpenBook book(bookOf(noteWith("Tom & Jerry <1>", "plain text")));
    const std::array<const char*, 7> names{
        "mimetype",        "META-INF/container.xml", "OEBPS/content.opf",     "OEBPS/toc.ncx",
        "OEBPS/nav.xhtml", "OEBPS/chapter1.xhtml",   "OEBPS/styles/style.css"};
    ASSERT_EQ(book.count(), 7);
    for (zip_uint64_t i = 0; i < names.size(); ++i) {
        const zip_stat_t entry = book.entry(i);
        EXPECT_STREQ(entry.name, names[i]);
        EXPECT_EQ(entry.comp_method, i == 0 ? ZIP_CM_STORE : ZIP_CM_DEFLATE);
    }
    EXPECT_EQ(book.read("mimetype"), "application/epub+zip");
    const std::string package = book.read("OEBPS/content.opf");
    EXPECT_NE(package.find("<dc:title>Tom &amp; Jerry &lt;1&gt;</dc:title>"), std::string::npos);
    EXPECT_NE(package.find("urn:uuid:4A8F1C52-6B0E-4C7D-9E1A-0123456789AB<"), std::string::npos);
    EXPECT_NE(package.find("<dc:date>2024-03-05T14:07:09Z</dc:date>"), std::string::npos);
    // Without headings: one point for the book itself, and an empty list.
    EXPECT_NE(book.read("OEBPS/toc.ncx").find("<content src=\"chapter1.xhtml\"/>"),
              std::string::npos);
    EXPECT_NE(book.read("OEBPS/nav.xhtml").find("<ol>\n\n        </ol>"), std::string::npos);
}

TEST(EPUBExporter, ListsHeadingsByTheIdsOfTheChapter) {
    OpenBook book(bookOf(noteWith("", "# One\n\n## Two & 'three'\n\n# One\n")));
    const std::string ncx = book.read("OEBPS/toc.ncx");
    EXPECT_NE(ncx.find("<navPoint id=\"navpoint-3\" playOrder=\"3\">"), std::string::npos);
    EXPECT_NE(ncx.find("<text>Two &amp; &apos;three&apos;</text>"), std::string::npos);
    EXPECT_NE(ncx.find("chapter1.xhtml#one-2\""), std::string::npos);
    EXPECT_NE(book.read("OEBPS/chapter1.xhtml").find("<h1 id=\"one-2\"><a name=\"one-2\"></a>"),
              std::string::npos);
    EXPECT_NE(book.read("OEBPS/content.opf").find("<dc:title>Untitled</dc:title>"),
              std::string::npos);
}

TEST(ChapterMarkup, LeavesAChapterThatIsFineAsItIs) {
    const std::string html = MarkdownParserService::renderBody(
        "# Title\n\nline\nline [in](#title) &amp; `code`\n\n| a |\n|---|\n| b |\n\n---\n\n"
        "<div class=\"x\">raw &#38; sound<br></div>\n");
    EXPECT_EQ(chapterMarkup(html).body, withSelfClosedTags(html));
}

TEST(ChapterMarkup, ClosesVoidElementsOnce) {
    EXPECT_EQ(withSelfClosedTags("<br><br/><br /><hr class=\"a\"><hrx><img src=\"a\"\nalt=\"\">"),
              "<br/><br/><br /><hr class=\"a\"/><hrx><img src=\"a\"\nalt=\"\"/>");
}

TEST(ChapterMarkup, KeepsEveryWordOfBrokenHtml) {
    const std::string body =
        chapterMarkup(
            "<table>one<tr>two<td>three</table><ul>four<foo>five</foo></ul><p><div>six"
            "<b>seven</p>&nbsp;&bogus;<custom-tag>eight")
            .body;
    for (const char* word : {"one", "two", "three", "four", "five", "six", "seven", "eight"}) {
        EXPECT_NE(body.find(word), std::string::npos) << word << " in " << body;
    }
    EXPECT_EQ(body.find("<foo"), std::string::npos);
}

TEST(ChapterMarkup, CarriesLargeImagesThroughUnchanged) {
    const std::string image = "data:image/png;base64," + std::string(24'000'000, 'A');
    const std::string body =
        chapterMarkup(
            "<ul>\n<li class=\"task-list-item\"><input type=\"checkbox\" disabled> x</li>"
            "\n</ul>\n<p><img src=\"" +
            image + "\" alt=\"\"></p>")
            .body;
    EXPECT_NE(body.find("<img src=\"" + image + "\" alt=\"\"/>"), std::string::npos);
}

TEST(EPUBExporter, SaysWhenTheArchiveCannotBeMade) {
    setenv("TMPDIR", "/nowhere/at/all", 1);
    try {
        bookOf(noteWith("", "x"));
        ADD_FAILURE() << "a book without a place for it";
    } catch (const ExportError& error) {
        EXPECT_EQ(error.kind(), ExportError::Kind::epubCreationFailed);
        EXPECT_EQ(std::string(error.what()).find("Cannot create archive: "), 0U) << error.what();
    }
    unsetenv("TMPDIR");
}

TEST(EPUBExporter, TakesThousandsOfHeadings) {
    std::string text;
    for (int i = 0; i < 10'000; ++i)
        text += "## Same\n\n";
    OpenBook book(bookOf(noteWith("", text)));
    EXPECT_NE(book.read("OEBPS/toc.ncx").find("chapter1.xhtml#same-10000\""), std::string::npos);
}

std::string checked(const fs::path& book) {
    const std::string command =
        "java -XX:TieredStopAtLevel=1 -XX:+UseSerialGC -jar /usr/share/java/epubcheck.jar '" +
        book.string() + "' 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> part{};
    while (fgets(part.data(), part.size(), pipe) != nullptr)
        output += part.data();
    pclose(pipe);
    return output;
}

// EPUBCheck's word on rough notes. They make one book, because the checker takes seconds to start;
// with CORVEL_CHECK_EACH set each is a book of its own, to see which one is at fault.
TEST(EPUBExporter, SatisfiesTheChecker) {
    const TemporaryFolder folder;
    std::string all;
    const auto check = [&](const std::string& title, const std::string& text) {
        const auto book = folder.write("book.epub", bookOf(noteWith(title, text)));
        const std::string output = checked(book);
        EXPECT_NE(output.find("0 fatals / 0 errors"), std::string::npos) << title << output;
    };
    for (const auto& file : fs::directory_iterator(fs::path(CORVEL_TEST_DATA) / "export/notes")) {
        const std::string text = contentOf(file.path());
        if (std::getenv("CORVEL_CHECK_EACH") != nullptr) check(file.path().stem(), text);
        all += text + "\n\n";
    }
    check("<b> & \"title\" \x01", all);
}

}  // namespace
}  // namespace corvel
