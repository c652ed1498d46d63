#include "export/TXTExporter.h"

#include "export/Outcome.h"
#include "markdown/MarkdownPlainTextRenderer.h"

#include <utility>

namespace corvel {

// The body is not used: rendering it shows that the text can be parsed in time, in a process of its
// own where that is in doubt.
void TXTExporter::exportNote(const Note& note,
                             const ExportOptions&,
                             const Theme&,
                             const Glib::RefPtr<Gio::Cancellable>& cancellable,
                             Done done) {
    m_body.render(note, NoteBody::Images::asWritten, cancellable,
                  [markdown = note.content,
                   done = std::move(done)](const std::variant<std::string, ExportError>& body) {
                      if (const auto* error = std::get_if<ExportError>(&body)) return done(*error);
                      done(encoded(MarkdownPlainTextRenderer().render(markdown)));
                  });
}

}  // namespace corvel
