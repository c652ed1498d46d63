#pragma once

#include "export/Exporter.h"
#include "export/NoteBody.h"

#include <string_view>

namespace corvel {

/// One page that stands by itself: the note, the theme's style sheet when asked for, and a script
/// that scrolls to in-page anchors.
class HTMLExporter : public Exporter {
public:
    explicit HTMLExporter(NoteBody body) : m_body(std::move(body)) {}

    ExportFormat supportedFormat() const override { return ExportFormat::html; }
    void exportNote(const Note& note,
                    const ExportOptions& options,
                    const Theme& theme,
                    const Glib::RefPtr<Gio::Cancellable>& cancellable,
                    Done done) override;

    /// The document around `body`.
    static std::string page(std::string_view title, std::string_view css, std::string_view body);

private:
    NoteBody m_body;
};

}  // namespace corvel
