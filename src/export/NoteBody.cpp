#include "export/NoteBody.h"

#include <utility>

namespace corvel {

void NoteBody::render(const std::string& markdown,
                      Images images,
                      const Glib::RefPtr<Gio::Cancellable>& cancellable,
                      Done done) const {
    m_renderer.render(
        markdown, cancellable,
        [&parser = m_parser, images, cancellable, done = std::move(done)](RenderOutcome outcome) {
            if (cancellable->is_cancelled()) return;
            if (outcome.isPlainText) {
                return done(ExportError(ExportError::Kind::tooComplex));
            }
            done(images == Images::embedded ? parser.postProcessImages(std::move(outcome.html))
                                            : std::move(outcome.html));
        });
}

}  // namespace corvel
