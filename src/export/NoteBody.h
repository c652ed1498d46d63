#pragma once

#include "export/ExportError.h"
#include "markdown/GuardedRenderer.h"
#include "markdown/MarkdownParserService.h"

#include <giomm/cancellable.h>

#include <functional>
#include <string>
#include <variant>

namespace corvel {

/// What every export with markup begins with: the HTML of a note's text.
class NoteBody {
public:
    enum class Images { embedded, asWritten };
    using Done = std::function<void(std::variant<std::string, ExportError>)>;

    /// `parser` must outlive this.
    explicit NoteBody(const MarkdownParserService& parser,
                      GuardedRenderer renderer = GuardedRenderer())
        : m_parser(parser), m_renderer(std::move(renderer)) {}

    /// Calls `done` exactly once, on the main loop, never before this function returns; not at all
    /// once `cancellable` was cancelled.
    void render(const std::string& markdown,
                Images images,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                Done done) const;

private:
    const MarkdownParserService& m_parser;
    GuardedRenderer m_renderer;
};

}  // namespace corvel
