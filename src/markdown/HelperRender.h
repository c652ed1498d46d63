#pragma once

#include "markdown/GuardedRenderer.h"
#include "platform/Handle.h"

#include <gio/gio.h>
#include <giomm/cancellable.h>
#include <sigc++/connection.h>

#include <chrono>
#include <memory>
#include <string>

namespace corvel {

/// One rendering in a helper process. Keeps itself alive until it has called `done`.
class HelperRender : public std::enable_shared_from_this<HelperRender> {
public:
    HelperRender(std::string markdown, GuardedRenderer::Done done);
    HelperRender(const HelperRender&) = delete;
    HelperRender& operator=(const HelperRender&) = delete;
    ~HelperRender();

    void start(const std::string& executable,
               std::chrono::milliseconds limit,
               const Glib::RefPtr<Gio::Cancellable>& cancellable);

private:
    bool launch(const std::string& executable);
    void finish(GAsyncResult* result);
    bool takeHtml(GAsyncResult* result, std::string& html) const;
    void answerPlainTextLater();
    RenderOutcome plainText() const;

    std::string m_markdown;
    GuardedRenderer::Done m_done;
    GObjectHandle<GSubprocess> m_process;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    sigc::connection m_timer;
};

}  // namespace corvel
