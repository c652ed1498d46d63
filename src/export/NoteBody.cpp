#include "export/NoteBody.h"

#include "export/RemoteEmbedding.h"

#include <utility>

namespace corvel {

std::filesystem::path imageFolderOf(const Note& note) {
    if (!note.sourceFilePath) return {};
    return std::filesystem::path(*note.sourceFilePath).parent_path();
}

void NoteBody::render(const Note& note,
                      Images images,
                      const Glib::RefPtr<Gio::Cancellable>& cancellable,
                      Done done) const {
    const auto finish = [&parser = m_parser, remote = m_remoteImages, images, cancellable,
                         folder = imageFolderOf(note),
                         done = std::move(done)](RenderOutcome outcome) {
        if (cancellable->is_cancelled()) return;
        if (outcome.isPlainText) return done(ExportError(ExportError::Kind::tooComplex));
        if (images == Images::asWritten) return done(std::move(outcome.html));
        std::string html = parser.postProcessImages(std::move(outcome.html), folder);
        if (images == Images::embedded || remote == nullptr) return done(std::move(html));
        RemoteEmbedding::start(std::move(html), *remote, cancellable, done);
    };
    m_renderer.render(note.content, cancellable, finish);
}

}  // namespace corvel
