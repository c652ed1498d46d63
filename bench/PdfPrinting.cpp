#include "app/HelperRoles.h"
#include "export/PDFExporter.h"
#include "export/pdf/PrintPage.h"
#include "platform/gtk/WebKitPrintView.h"
#include "platform/gtk/WebRoom.h"
#include "support/BenchFolder.h"
#include "support/LoopSlices.h"
#include "support/TextGenerator.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeStylesheet.h"

#include <adwaita.h>
#include <gtkmm/init.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

// PDF of a note of about 50 pages, from the text to the file on disk, with links, outline and
// running lines; beside headless Chromium and WeasyPrint, whole processes, with the same page and
// none of these. By turns, medians. Needs a display and a session bus; a number of rounds and of
// kilobytes may be given, and the path of a picture that the note shows as well.

namespace corvel {
namespace {

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

class Printing {
public:
    Printing(std::size_t noteSize, const std::string& picture) {
        static const std::vector<std::string> tags{"praca", "dom"};
        TextGenerator generator(20240517, TextGenerator::Language::polish, tags);
        m_note.title = "Raport";
        m_note.content = generator.note(m_note.title, noteSize);
        if (!picture.empty()) m_note.content += "\n\n![picture](" + picture + ")\n";
        const auto body = MarkdownParserService::renderBody(m_note.content);
        std::ofstream(page(), std::ios::binary)
            << printPage(PageSize::a4, m_note.title, generateCSS(themes::builtInLight()), body);
    }

    void ours() {
        std::optional<ExportOutcome> outcome;
        m_exporter.exportNote(m_note, {}, themes::builtInLight(), Gio::Cancellable::create(),
                              [&](ExportOutcome result) { outcome = std::move(result); });
        m_slices.runUntil([&] { return outcome.has_value(); });
        if (const auto* error = std::get_if<ExportError>(&*outcome)) {
            std::printf("failed: %s\n", error->what());
            return;
        }
        std::ofstream(m_folder.path() / "ours.pdf", std::ios::binary)
            << std::get<std::string>(*outcome);
    }
    void chromium() const {
        run("chromium --headless --no-sandbox --disable-gpu --no-pdf-header-footer "
            "--print-to-pdf=" +
            (m_folder.path() / "chromium.pdf").string() + " file://" + page().string() +
            " >/dev/null 2>&1");
    }
    void weasyprint() const {
        run("weasyprint -q " + page().string() + " " +
            (m_folder.path() / "weasyprint.pdf").string());
    }
    void showSlices() const {
        std::printf("longest slice %.0f ms, costliest %.0f ms of processor time\n",
                    m_slices.longestMilliseconds(), m_slices.costliestMilliseconds());
    }
    void showPages() const {
        run("pdfinfo " + (m_folder.path() / "ours.pdf").string() + " | grep Pages");
    }

private:
    std::filesystem::path page() const { return m_folder.path() / "page.html"; }
    static void run(const std::string& command) {
        if (std::system(command.c_str()) != 0) std::printf("failed: %s\n", command.c_str());
    }

    BenchFolder m_folder;
    WebRoom m_room;
    MarkdownParserService m_parser;
    PDFExporter m_exporter{NoteBody(m_parser),
                           [this](const PaperSize& paper) {
                               return std::make_unique<WebKitPrintView>(m_room.makeView("sha256-"),
                                                                        paper);
                           },
                           "pl"};
    Note m_note;
    LoopSlices m_slices;
};

}  // namespace
}  // namespace corvel

int main(int argc, char** argv) {
    if (const auto status = corvel::runAsHelper(argc, argv)) return *status;
    adw_init();
    Gtk::init_gtkmm_internals();
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
    const int kilobytes = argc > 2 ? std::atoi(argv[2]) : 100;
    corvel::Printing printing(static_cast<std::size_t>(kilobytes) * 1000, argc > 3 ? argv[3] : "");
    std::vector<double> ours;
    std::vector<double> chromium;
    std::vector<double> weasyprint;
    for (int round = 0; round <= rounds; ++round) {
        ours.push_back(corvel::secondsOf([&] { printing.ours(); }));
        if (rounds == 0) break;
        chromium.push_back(corvel::secondsOf([&] { printing.chromium(); }));
        weasyprint.push_back(corvel::secondsOf([&] { printing.weasyprint(); }));
    }
    printing.showPages();
    printing.showSlices();
    const double median = corvel::medianOf(ours);
    std::printf("ours %.2f s\n", median);
    if (rounds == 0) return 0;
    std::printf("beside chromium %.2f (%.2f s), beside weasyprint %.2f (%.2f s)\n",
                median / corvel::medianOf(chromium), corvel::medianOf(chromium),
                median / corvel::medianOf(weasyprint), corvel::medianOf(weasyprint));
    return 0;
}
