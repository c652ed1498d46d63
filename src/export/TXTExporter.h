#pragma once

#include "export/Exporter.h"
#include "export/NoteBody.h"

namespace corvel {

/// The note as readable text without marks. Options and theme make no difference.
class TXTExporter : public Exporter {
public:
    explicit TXTExporter(NoteBody body) : m_body(std::move(body)) {}

    ExportFormat supportedFormat() const override { return ExportFormat::txt; }
    void exportNote(const Note& note,
                    const ExportOptions& options,
                    const Theme& theme,
                    const Glib::RefPtr<Gio::Cancellable>& cancellable,
                    Done done) override;

private:
    NoteBody m_body;
};

}  // namespace corvel
