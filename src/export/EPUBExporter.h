#pragma once

#include "export/Exporter.h"
#include "export/NoteBody.h"

namespace corvel {

/// An EPUB 3 book with the note as its only chapter.
class EPUBExporter : public Exporter {
public:
    explicit EPUBExporter(NoteBody body) : m_body(std::move(body)) {}

    ExportFormat supportedFormat() const override { return ExportFormat::epub; }
    void exportNote(const Note& note,
                    const ExportOptions& options,
                    const Theme& theme,
                    const Glib::RefPtr<Gio::Cancellable>& cancellable,
                    Done done) override;

    /// The whole book of a note whose rendered body is `html`. Throws ExportError.
    static std::string book(const Note& note, const std::string& html, std::string_view stylesheet);

private:
    NoteBody m_body;
};

}  // namespace corvel
