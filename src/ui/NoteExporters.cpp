#include "ui/NoteExporters.h"

#include "export/EPUBExporter.h"
#include "export/HTMLExporter.h"
#include "export/PDFExporter.h"
#include "export/TXTExporter.h"
#include "platform/gtk/WebKitPrintView.h"

namespace corvel {

namespace {

// No script of a printed page runs: no text has this digest.
constexpr const char* kNoScript = "sha256-";

}  // namespace

std::unique_ptr<Exporter> NoteExporters::make(ExportFormat format) {
    const NoteBody body(m_session.parser, remoteImages());
    switch (format) {
        case ExportFormat::html:
            return std::make_unique<HTMLExporter>(body);
        case ExportFormat::epub:
            return std::make_unique<EPUBExporter>(body);
        case ExportFormat::txt:
            return std::make_unique<TXTExporter>(body);
        case ExportFormat::pdf:
            break;
    }
    return std::make_unique<PDFExporter>(
        body, [this](const PaperSize& paper) { return makePrintView(paper); },
        m_session.texts.languageCode());
}

std::unique_ptr<PrintView> NoteExporters::makePrintView(const PaperSize& paper) {
    if (!m_room) m_room = std::make_unique<WebRoom>();
    return std::make_unique<WebKitPrintView>(m_room->makeView(kNoScript), paper);
}

RemoteImages* NoteExporters::remoteImages() {
    if (!m_session.preferences.loadRemoteImages()) return nullptr;
    if (!m_remoteImages) m_remoteImages = std::make_unique<RemoteImages>();
    return m_remoteImages.get();
}

}  // namespace corvel
