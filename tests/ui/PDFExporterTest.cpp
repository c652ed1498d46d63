#include "export/PDFExporter.h"
#include "markdown/DataUrl.h"
#include "platform/Handle.h"
#include "platform/gtk/WebKitPrintView.h"
#include "platform/gtk/WebRoom.h"
#include "support/FileContent.h"
#include "support/MainLoop.h"
#include "support/TemporaryFolder.h"
#include "themes/BuiltInThemes.h"

#include <gdkmm/pixbuf.h>
#include <gtest/gtest.h>
#include <gtkmm/init.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace corvel {
namespace {

namespace fs = std::filesystem;

class PDFExporterTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
    }

    std::unique_ptr<PrintView> makeView(const PaperSize& paper) {
        return std::make_unique<WebKitPrintView>(room.makeView("sha256-none"), paper);
    }

    /// The file of an export, written to disk for the tools that read it.
    fs::path exported(const std::string& title,
                      const std::string& content,
                      const ExportOptions& options = {}) {
        Note note;
        note.title = title;
        note.content = content;
        std::optional<ExportOutcome> outcome;
        exporter.exportNote(note, options, themes::builtInLight(), Gio::Cancellable::create(),
                            [&](ExportOutcome result) { outcome = std::move(result); });
        EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }, std::chrono::seconds(60)));
        if (const auto* error = std::get_if<ExportError>(&*outcome)) ADD_FAILURE() << error->what();
        const auto* bytes = std::get_if<std::string>(&*outcome);
        return folder.write("note.pdf", bytes != nullptr ? *bytes : "");
    }

    /// A pixel near the beginning of a PPM file, whose header has no fixed length.
    static std::size_t firstPixel(const std::string& ppm) { return 18 + ppm.size() % 3; }

    static std::string outputOf(const std::string& command) {
        FILE* pipe = popen((command + " 2>&1").c_str(), "r");
        std::string output;
        std::array<char, 4096> part{};
        while (fgets(part.data(), part.size(), pipe) != nullptr)
            output += part.data();
        pclose(pipe);
        return output;
    }

    TemporaryFolder folder;
    WebRoom room;
    MarkdownParserService parser;
    PDFExporter exporter{NoteBody(parser),
                         [this](const PaperSize& paper) { return makeView(paper); }, "pl"};
};

std::string longNote() {
    std::string text =
        "# Początek\n\nDo [końca](#koniec) i do [sieci](https://example.org/ż?a=1).\n\n";
    for (int i = 1; i <= 60; ++i) {
        text += "## Rozdział " + std::to_string(i) + "\n\n" + std::string(40, ' ');
        for (int word = 0; word < 60; ++word)
            text += "słowo" + std::to_string(word) + " ";
        text += "\n\n";
    }
    return text + "# Koniec\n\n- [x] zrobione\n\n```\n" + std::string(300, 'w') + "\n```\n";
}

TEST_F(PDFExporterTest, PrintsTitleNumbersLinksAndOutline) {
    const auto file =
        exported("Say \"hi\" & żółw", longNote(), {.includeHeaderFooter = false}).string();
    const std::string info = outputOf("pdfinfo " + file);
    EXPECT_NE(info.find("Page size:       595 x 842 pts (A4)"), std::string::npos) << info;
    EXPECT_NE(info.find("Title:           Say \"hi\" & żółw"), std::string::npos) << info;
    const std::string second = outputOf("pdftotext -f 2 -l 2 -layout " + file + " -");
    EXPECT_NE(second.find("Say &quot;hi&quot; &amp; żółw"), std::string::npos) << second;
    EXPECT_NE(second.find(" 2\n"), std::string::npos) << second;
    const std::string links = outputOf("pdfinfo -url " + file);
    EXPECT_NE(links.find("https://example.org/%C5%BC?a=1"), std::string::npos) << links;
    const std::string json = outputOf("pdftohtml -xml -stdout -i " + file);
    EXPECT_NE(json.find("<outline>"), std::string::npos);
    EXPECT_NE(json.find(">Rozdział 60</item>"), std::string::npos);
    EXPECT_NE(json.find("note.html#"), std::string::npos) << "a link to another page";
}

TEST_F(PDFExporterTest, LeavesNoColourOfTheMarks) {
    const auto file = exported("t", longNote());
    outputOf("pdftoppm -r 40 " + file.string() + " " + (folder.path() / "page").string());
    int pictures = 0;
    for (const auto& picture : fs::directory_iterator(folder.path())) {
        if (picture.path().extension() != ".ppm") continue;
        const std::string bytes = contentOf(picture.path());
        for (std::size_t at = firstPixel(bytes); at + 2 < bytes.size(); at += 3) {
            const auto red = static_cast<unsigned char>(bytes[at]);
            const auto green = static_cast<unsigned char>(bytes[at + 1]);
            ASSERT_FALSE(red > 240 && green < 60) << picture.path();
        }
        ++pictures;
    }
    EXPECT_GT(pictures, 3);
}

// A picture higher than the page, and a heading for which only its own line is left on a page:
// where that is depends on the fonts, so one of many notes has it.
TEST_F(PDFExporterTest, ShowsPicturesAndKeepsHeadingsWithTheirText) {
    const std::string picture =
        "<svg xmlns='http://www.w3.org/2000/svg' width='600' height='3000'><rect width='600' "
        "height='3000' fill='green'/></svg>";
    const auto url =
        dataUrl("image/svg+xml",
                std::span(reinterpret_cast<const std::uint8_t*>(picture.data()), picture.size()));
    const auto file = exported("", "![tall](" + url + ")\n\nafter\n").string();
    EXPECT_EQ(outputOf("pdfinfo " + file + " | grep Pages"), "Pages:           1\n") << "it fits";
    const auto sheet = (folder.path() / "sheet").string();
    outputOf("pdftoppm -r 20 -singlefile " + file + " " + sheet);
    const std::string bytes = contentOf(sheet + ".ppm");
    int green = 0;
    for (std::size_t at = firstPixel(bytes); at + 2 < bytes.size(); at += 3) {
        if (bytes[at] == 0 && bytes[at + 1] != 0 && bytes[at + 2] == 0) ++green;
    }
    EXPECT_GT(green, 2000) << "the picture shows";
    for (int lines = 18; lines < 26; ++lines) {
        std::string text;
        for (int line = 0; line < lines; ++line)
            text += "line\n\n";
        const auto pdf = exported("", text + "## Stranded\n\n```\ncode\n```\n").string();
        const std::string last = outputOf("pdftotext " + pdf + " -");
        const std::string page = last.substr(last.rfind('\f', last.size() - 2) + 1);
        EXPECT_NE(page.find("Stranded"), std::string::npos) << lines << " lines:\n" << page;
    }
}

std::string photo() {
    constexpr int kSide = 200;
    const auto pixels = Gdk::Pixbuf::create(Gdk::Colorspace::RGB, false, 8, kSide, kSide);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            guint8* pixel = pixels->get_pixels() + y * pixels->get_rowstride() + x * 3;
            pixel[0] = static_cast<guint8>(x);
            pixel[1] = static_cast<guint8>(y);
            pixel[2] = static_cast<guint8>(x * y / 100);
        }
    }
    gchar* bytes = nullptr;
    gsize size = 0;
    pixels->save_to_buffer(bytes, size, "jpeg");
    const Handle<gchar, g_free> owner(bytes);
    return {bytes, size};
}

TEST_F(PDFExporterTest, KeepsPhotosAsTheFilesTheyWere) {
    const std::string file = photo();
    const auto url = dataUrl(
        "image/jpeg", std::span(reinterpret_cast<const std::uint8_t*>(file.data()), file.size()));
    const auto pdf =
        exported("", "![one](" + url + ")\n\n<img loading=\"lazy\" src=\"" + url + "\">\n")
            .string();
    outputOf("pdfimages -all " + pdf + " " + (folder.path() / "photo").string());
    EXPECT_EQ(contentOf(folder.path() / "photo-000.jpg"), file);
    EXPECT_EQ(outputOf("pdftoppm -r 20 " + pdf + " " + (folder.path() / "seen").string()), "");
}

TEST_F(PDFExporterTest, LinksLeadToAnchorsOfRawHtml) {
    std::string text = "[empty](#x) [named](#n) [top](#) [inline](#s)\n\n[lost](#none)\n\n";
    for (int i = 0; i < 32; ++i)
        text += "line\n\n";
    text += "<a id=\"x\"></a>\n\n<a name=\"n\"></a> <span id=\"s\">words</span>\n\n[again](#x)\n";
    const auto file = exported("", text).string();
    const std::string pages = outputOf("pdftohtml -xml -stdout -i " + file);
    for (const char* link :
         {"#2\">empty<", "#2\">named<", "#1\">top<", "#2\">inline<", "#2\">again<"})
        EXPECT_NE(pages.find(link), std::string::npos) << link << "\n" << pages;
    EXPECT_EQ(pages.find(">lost</a>"), std::string::npos);
    EXPECT_NE(outputOf("pdfinfo " + file).find("Pages:           2\n"), std::string::npos);
}

TEST_F(PDFExporterTest, UsesThePaperThatIsAskedFor) {
    const std::string a5 =
        outputOf("pdfinfo " + exported("", "x", {.pageSize = PageSize::a5}).string());
    EXPECT_NE(a5.find("Page size:       420 x 595 pts"), std::string::npos) << a5;
    const std::string letter =
        outputOf("pdfinfo " + exported("", "x", {.pageSize = PageSize::letter}).string());
    EXPECT_NE(letter.find("612 x 792 pts (letter)"), std::string::npos) << letter;
}

TEST_F(PDFExporterTest, CancelledLeavesNothingAndNeverAnswers) {
    setenv("TMPDIR", folder.path().c_str(), 1);
    Note note;
    note.content = longNote();
    const auto cancellable = Gio::Cancellable::create();
    bool answered = false;
    exporter.exportNote(note, {}, themes::builtInLight(), cancellable,
                        [&](const ExportOutcome&) { answered = true; });
    const auto isEmpty = [this] { return fs::is_empty(folder.path()); };
    EXPECT_TRUE(turnUntil([&] { return !isEmpty(); }));
    cancellable->cancel();
    EXPECT_TRUE(turnUntil(isEmpty));
    unsetenv("TMPDIR");
    // What the web view may still have to say comes before what is asked of another one.
    exported("", "x");
    EXPECT_FALSE(answered);
}

}  // namespace
}  // namespace corvel
