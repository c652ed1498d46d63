#pragma once

#include "export/ExportError.h"
#include "markdown/GuardedRenderer.h"
#include "markdown/MarkdownParserService.h"
#include "model/Note.h"
#include "platform/RemoteImages.h"

#include <giomm/cancellable.h>

#include <filesystem>
#include <functional>
#include <string>
#include <variant>

namespace corvel {

/// Where relative addresses of images start in a note that mirrors a file; empty for other notes.
std::filesystem::path imageFolderOf(const Note& note);

/// What every export with markup begins with: the HTML of a note's text.
class NoteBody {
public:
    enum class Images {
        asWritten,
        embedded,    ///< attachments and local files
        allEmbedded  ///< those of the web as well, where they come in time and may be loaded
    };
    using Outcome = std::variant<std::string, ExportError>;
    using Done = std::function<void(Outcome)>;

    /// `parser` and `remoteImages` must outlive this; without the latter no image of the web is
    /// loaded.
    explicit NoteBody(const MarkdownParserService& parser,
                      RemoteImages* remoteImages = nullptr,
                      GuardedRenderer renderer = GuardedRenderer())
        : m_parser(parser), m_remoteImages(remoteImages), m_renderer(std::move(renderer)) {}

    /// Calls `done` exactly once, on the main loop, never before this function returns; not at all
    /// once `cancellable` was cancelled.
    void render(const Note& note,
                Images images,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                Done done) const;

private:
    const MarkdownParserService& m_parser;
    RemoteImages* m_remoteImages;
    GuardedRenderer m_renderer;
};

}  // namespace corvel
