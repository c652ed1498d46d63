#pragma once

#include "app/settings/Localisation.h"
#include "export/Exporter.h"
#include "export/NoteBody.h"
#include "platform/PrintView.h"

#include <functional>
#include <memory>
#include <string>

namespace corvel {

class PdfJob;

/// Prints the note in an off-screen web view and finishes the file: running title, page numbers,
/// links, outline.
class PDFExporter : public Exporter {
public:
    /// Makes a view whose frame has the size of the paper.
    using PrintViewMaker = std::function<std::unique_ptr<PrintView>(const PaperSize&)>;

    PDFExporter(NoteBody body, PrintViewMaker makeView, std::string language);
    ~PDFExporter() override;

    ExportFormat supportedFormat() const override { return ExportFormat::pdf; }
    void exportNote(const Note& note,
                    const ExportOptions& options,
                    const Theme& theme,
                    const Glib::RefPtr<Gio::Cancellable>& cancellable,
                    Done done) override;

private:
    NoteBody m_body;
    PrintViewMaker m_makeView;
    std::string m_language;
    std::shared_ptr<PdfJob> m_job;
};

}  // namespace corvel
