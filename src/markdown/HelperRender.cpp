#include "markdown/HelperRender.h"

#include "markdown/MarkdownHelper.h"
#include "markdown/MarkdownParserService.h"

#include <glibmm/main.h>

#include <csignal>
#include <memory>
#include <utility>

namespace corvel {

HelperRender::HelperRender(std::string markdown, GuardedRenderer::Done done)
    : m_markdown(std::move(markdown)), m_done(std::move(done)) {}

HelperRender::~HelperRender() {
    m_timer.disconnect();
}

void HelperRender::start(const std::string& executable,
                         std::chrono::milliseconds limit,
                         const Glib::RefPtr<Gio::Cancellable>& cancellable) {
    m_cancellable = cancellable;
    if (!launch(executable)) return answerPlainTextLater();
    const auto end = [weak = weak_from_this()] {
        if (const auto self = weak.lock()) g_subprocess_force_exit(self->m_process.get());
        return false;
    };
    m_timer = Glib::signal_timeout().connect(end, static_cast<unsigned>(limit.count()));
}

bool HelperRender::launch(const std::string& executable) {
    const char* const command[] = {executable.c_str(), kMarkdownHelperOption, nullptr};
    constexpr int kFlags = G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                           G_SUBPROCESS_FLAGS_STDERR_SILENCE;
    m_process.reset(g_subprocess_newv(command, static_cast<GSubprocessFlags>(kFlags), nullptr));
    if (!m_process) return false;
    // A helper that ends before it has read everything must not end this program.
    std::signal(SIGPIPE, SIG_IGN);
    const Handle<GBytes, g_bytes_unref> input{g_bytes_new(m_markdown.data(), m_markdown.size())};
    const auto answer = [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::shared_ptr<HelperRender>> self(
            static_cast<std::shared_ptr<HelperRender>*>(data));
        (*self)->finish(result);
    };
    g_subprocess_communicate_async(m_process.get(), input.get(),
                                   m_cancellable ? m_cancellable->gobj() : nullptr, answer,
                                   new std::shared_ptr<HelperRender>(shared_from_this()));
    return true;
}

void HelperRender::finish(GAsyncResult* result) {
    m_timer.disconnect();
    RenderOutcome outcome;
    if (!takeHtml(result, outcome.html)) {
        g_subprocess_force_exit(m_process.get());
        outcome = plainText();
    }
    std::exchange(m_done, {})(std::move(outcome));
}

bool HelperRender::takeHtml(GAsyncResult* result, std::string& html) const {
    GBytes* bytes = nullptr;
    if (g_subprocess_communicate_finish(m_process.get(), result, &bytes, nullptr, nullptr) ==
        FALSE) {
        return false;
    }
    const Handle<GBytes, g_bytes_unref> output{bytes};
    if (g_subprocess_get_successful(m_process.get()) == FALSE) return false;
    gsize size = 0;
    const gconstpointer data = output ? g_bytes_get_data(output.get(), &size) : nullptr;
    if (data != nullptr) html.assign(static_cast<const char*>(data), size);
    return true;
}

void HelperRender::answerPlainTextLater() {
    Glib::signal_idle().connect_once(
        [self = shared_from_this()] { std::exchange(self->m_done, {})(self->plainText()); },
        Glib::PRIORITY_DEFAULT);
}

RenderOutcome HelperRender::plainText() const {
    if (m_cancellable && m_cancellable->is_cancelled()) return {{}, true};
    return {"<pre>" + MarkdownParserService::escaped(m_markdown) + "</pre>", true};
}

}  // namespace corvel
