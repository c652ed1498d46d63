#include "export/NoteBody.h"

#include "export/RemoteEmbedding.h"

#include <utility>

namespace corvel {

void NoteBody::render(const std::string& markdown,
                      Images images,
                      const Glib::RefPtr<Gio::Cancellable>& cancellable,
                      Done done) const {
    const auto finish = [&parser = m_parser, remote = m_remoteImages, images, cancellable,
                         done = std::move(done)](RenderOutcome outcome) {
        if (cancellable->is_cancelled()) return;
        if (outcome.isPlainText) return done(ExportError(ExportError::Kind::tooComplex));
        if (images == Images::asWritten) return done(std::move(outcome.html));
        std::string html = parser.postProcessImages(std::move(outcome.html));
        if (images == Images::embedded || remote == nullptr) return done(std::move(html));
        RemoteEmbedding::start(std::move(html), *remote, cancellable, done);
    };
    m_renderer.render(markdown, cancellable, finish);
}

}  // namespace corvel
