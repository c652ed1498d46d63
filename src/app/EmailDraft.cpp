#include "app/EmailDraft.h"

#include "export/NoteBody.h"
#include "markdown/EmailMessage.h"
#include "markdown/MarkdownPlainTextRenderer.h"
#include "platform/FileBytes.h"
#include "platform/FileDescriptor.h"
#include "platform/Log.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kSuffix = ".eml";
constexpr std::chrono::hours kKept{24};

EmailStyle styleOf(const ThemeTypography& typography) {
    return {typography.fontFamily, typography.monoFontFamily, typography.baseFontSize,
            typography.lineHeight};
}

std::string messageOf(const std::string& content,
                      const std::filesystem::path& folder,
                      const std::string& subject,
                      const EmailStyle& style,
                      const RenderOutcome& rendered,
                      const MarkdownParserService& parser) {
    using Renderer = MarkdownPlainTextRenderer;
    std::string body = rendered.isPlainText ? "<pre style=\"white-space:pre-wrap\">" +
                                                  MarkdownParserService::escaped(content) + "</pre>"
                                            : parser.postProcessImages(rendered.html, folder);
    const std::string text =
        rendered.isPlainText ? content : Renderer(Renderer::Links::withAddress).render(content);
    const std::string page = MarkdownParserService::emailPage(subject, body, style);
    return emailMessage({subject, text, page, Date::now()});
}

}  // namespace

EmailDraft::EmailDraft(const MarkdownParserService& parser,
                       std::filesystem::path folder,
                       GuardedRenderer renderer)
    : m_parser(parser), m_folder(std::move(folder)), m_renderer(std::move(renderer)) {}

EmailDraft::~EmailDraft() {
    if (m_rendering) m_rendering->cancel();
}

void EmailDraft::write(const Note& note,
                       const std::string& subject,
                       const Theme& theme,
                       Done done) {
    if (m_rendering) m_rendering->cancel();
    m_rendering = Gio::Cancellable::create();
    m_renderer.render(
        note.content, m_rendering,
        [this, request = m_rendering, content = note.content, folder = imageFolderOf(note), subject,
         style = styleOf(theme.typography), done = std::move(done)](const RenderOutcome& rendered) {
            if (request->is_cancelled()) return;
            done(store(messageOf(content, folder, subject, style, rendered, m_parser)));
        });
}

// Readable by nobody else: it is a note.
std::optional<std::filesystem::path> EmailDraft::store(const std::string& message) const {
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    ::chmod(m_folder.c_str(), 0700);
    auto path = m_folder / (Uuid::random().toString() + kSuffix);
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (file.isOpen() && writeAll(file.get(), message)) return path;
    logLine("Error writing message: " + path.string() + ": " + std::strerror(errno));
    std::filesystem::remove(path, ignored);
    return std::nullopt;
}

void EmailDraft::sweep() const {
    const auto oldest = std::filesystem::file_time_type::clock::now() - kKept;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder, error)) {
        if (entry.path().extension() != kSuffix) continue;
        if (entry.last_write_time(error) < oldest) std::filesystem::remove(entry.path(), error);
    }
}

}  // namespace corvel
