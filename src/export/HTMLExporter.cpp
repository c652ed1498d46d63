#include "export/HTMLExporter.h"

#include "export/Outcome.h"
#include "markdown/MarkdownParserService.h"
#include "themes/ThemeStylesheet.h"

#include <utility>

namespace corvel {

// The page of the renderer, with the body set in by four spaces.
std::string HTMLExporter::page(std::string_view title,
                               std::string_view css,
                               std::string_view body) {
    return MarkdownParserService::fullPage(title, css, std::string("    ").append(body));
}

void HTMLExporter::exportNote(const Note& note,
                              const ExportOptions& options,
                              const Theme& theme,
                              const Glib::RefPtr<Gio::Cancellable>& cancellable,
                              Done done) {
    using Images = NoteBody::Images;
    m_body.render(note, options.embedImages ? Images::embedded : Images::asWritten, cancellable,
                  [title = note.title, css = options.applyTheme ? generateCSS(theme) : "",
                   done = std::move(done)](std::variant<std::string, ExportError> body) {
                      if (const auto* error = std::get_if<ExportError>(&body)) return done(*error);
                      done(encoded(page(title, css, std::get<std::string>(body))));
                  });
}

}  // namespace corvel
