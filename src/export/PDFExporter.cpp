#include "export/PDFExporter.h"

#include "export/pdf/PdfJob.h"
#include "export/pdf/PrintPage.h"
#include "platform/Text.h"
#include "themes/ThemeStylesheet.h"

#include <utility>

namespace corvel {

namespace {

constexpr double kMargin = 72 / 2.54 * 2;  // 2 cm

PaperSize paperOf(PageSize size) {
    const auto sheet = dimensions(size);
    return {static_cast<double>(sheet.width), static_cast<double>(sheet.height), kMargin};
}

}  // namespace

PDFExporter::PDFExporter(NoteBody body, PrintViewMaker makeView, std::string language)
    : m_body(std::move(body)), m_makeView(std::move(makeView)), m_language(std::move(language)) {}

PDFExporter::~PDFExporter() = default;

void PDFExporter::exportNote(const Note& note,
                             const ExportOptions& options,
                             const Theme& theme,
                             const Glib::RefPtr<Gio::Cancellable>& cancellable,
                             Done done) {
    PdfDescription description{text::repaired(note.title), m_language, std::nullopt};
    if (options.applyTheme) description.paper = colorFromHex(theme.colors.background);
    m_job = PdfJob::create({paperOf(options.pageSize), std::move(description)}, cancellable,
                           std::move(done));
    m_body.render(
        note, NoteBody::Images::allEmbedded, cancellable,
        [this, job = m_job, size = options.pageSize,
         css = options.applyTheme ? generateCSS(theme) : std::string(plainPrintStylesheet())](
            const std::variant<std::string, ExportError>& body) {
            if (const auto* error = std::get_if<ExportError>(&body)) return job->fail(*error);
            job->start(m_makeView, printPage(size, job->title(), css, std::get<std::string>(body)));
        });
}

}  // namespace corvel
