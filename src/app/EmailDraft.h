#pragma once

#include "markdown/GuardedRenderer.h"
#include "markdown/MarkdownParserService.h"
#include "model/Note.h"
#include "themes/Theme.h"

#include <giomm/cancellable.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// Makes a message of a note, as a file for the user's mail program.
class EmailDraft {
public:
    using Done = std::function<void(std::optional<std::filesystem::path> file)>;

    /// `parser` must outlive this; message files are written to `folder`.
    EmailDraft(const MarkdownParserService& parser,
               std::filesystem::path folder,
               GuardedRenderer renderer = GuardedRenderer());
    EmailDraft(const EmailDraft&) = delete;
    EmailDraft& operator=(const EmailDraft&) = delete;
    ~EmailDraft();

    /// Calls `done` once, on the main loop, never before this function returns, with none when the
    /// file could not be written; not at all when another message is begun first. A note that is
    /// too much for the parser is sent as its plain text.
    void write(const Note& note, const std::string& subject, const Theme& theme, Done done);

    /// Removes the message files of earlier days: the mail program has read them long since.
    void sweep() const;

private:
    std::optional<std::filesystem::path> store(const std::string& message) const;

    const MarkdownParserService& m_parser;
    std::filesystem::path m_folder;
    GuardedRenderer m_renderer;
    Glib::RefPtr<Gio::Cancellable> m_rendering;
};

}  // namespace corvel
