#include "export/EPUBExporter.h"
#include "export/HTMLExporter.h"
#include "markdown/MarkdownParserService.h"
#include "support/BenchFolder.h"
#include "support/PairedRun.h"
#include "support/TextGenerator.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// Exports beside what a user would otherwise use: pandoc as a whole process for books, and bare
// rendering and writing for pages.

namespace corvel {
namespace {

constexpr int kRounds = 9;
constexpr std::size_t kNoteSize = 1'000'000;

const std::string& noteText() {
    static const std::vector<std::string> tags{"praca", "praca/plan", "dom"};
    static const std::string text =
        TextGenerator(20240517, TextGenerator::Language::polish, tags).note("Raport", kNoteSize);
    return text;
}

void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

void run(const std::string& command) {
    if (std::system(command.c_str()) != 0) std::abort();
}

void bookBesidePandoc(benchmark::State& state) {
    if (std::system("command -v pandoc >/dev/null") != 0) {
        return state.SkipWithError("pandoc is not installed");
    }
    const BenchFolder folder;
    const auto source = folder.path() / "note.md";
    writeFile(source, noteText());
    Note note;
    note.id = Uuid::random();
    note.title = "Raport";
    note.modifiedAt = Date::now();
    const MarkdownParserService parser;
    PairedRun(kRounds).run(
        state,
        [&] {
            const auto html =
                parser.postProcessImages(MarkdownParserService::renderBody(noteText()));
            writeFile(folder.path() / "ours.epub",
                      EPUBExporter::book(note, html, generateCSS(themes::builtInLight())));
        },
        [&] {
            run("pandoc -f gfm -t epub3 --metadata title=Raport -o " +
                (folder.path() / "pandoc.epub").string() + " " + source.string());
        });
}

void pageBesideRendering(benchmark::State& state) {
    const BenchFolder folder;
    const MarkdownParserService parser;
    PairedRun(kRounds * 5)
        .run(
            state,
            [&] {
                const auto html =
                    parser.postProcessImages(MarkdownParserService::renderBody(noteText()));
                writeFile(folder.path() / "ours.html",
                          HTMLExporter::page("Raport", generateCSS(themes::builtInLight()), html));
            },
            [&] {
                writeFile(folder.path() / "bare.html",
                          MarkdownParserService::renderBody(noteText()));
            });
}

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    corvel::registerPaired("EPUB of 1 MB beside pandoc", corvel::bookBesidePandoc);
    corvel::registerPaired("HTML of 1 MB beside rendering and writing",
                           corvel::pageBesideRendering);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
