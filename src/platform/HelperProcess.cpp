#include "platform/HelperProcess.h"

#include <glibmm/main.h>
#include <sigc++/connection.h>

#include <csignal>
#include <memory>
#include <utility>

namespace corvel {

namespace {

/// One process at its work.
struct Running {
    GObjectHandle<GSubprocess> process;
    std::string input;
    HelperProcess::Done done;
    sigc::connection timer;
};

GObjectHandle<GSubprocess> launch(const std::vector<std::string>& command) {
    std::vector<const char*> words;
    words.reserve(command.size() + 1);
    for (const auto& word : command)
        words.push_back(word.c_str());
    words.push_back(nullptr);
    constexpr int kFlags = G_SUBPROCESS_FLAGS_STDIN_PIPE | G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                           G_SUBPROCESS_FLAGS_STDERR_SILENCE;
    return GObjectHandle<GSubprocess>(
        g_subprocess_newv(words.data(), static_cast<GSubprocessFlags>(kFlags), nullptr));
}

HelperOutcome outcomeOf(GSubprocess* process, GAsyncResult* result) {
    GBytes* bytes = nullptr;
    const bool isThrough =
        g_subprocess_communicate_finish(process, result, &bytes, nullptr, nullptr) != FALSE;
    const Handle<GBytes, g_bytes_unref> output(bytes);
    if (!isThrough) {
        g_subprocess_force_exit(process);
        return {};
    }
    gsize size = 0;
    const auto* text = static_cast<const char*>(g_bytes_get_data(output.get(), &size));
    return {g_subprocess_get_successful(process) != FALSE,
            text != nullptr ? std::string(text, size) : std::string()};
}

void finished(GObject*, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Running> running(static_cast<Running*>(data));
    running->timer.disconnect();
    running->done(outcomeOf(running->process.get(), result));
}

}  // namespace

HelperProcess::HelperProcess(const std::vector<std::string>& command)
    : m_process(launch(command)) {}

HelperProcess::~HelperProcess() {
    if (m_process) g_subprocess_force_exit(m_process.get());
}

void HelperProcess::work(std::string input,
                         const Glib::RefPtr<Gio::Cancellable>& cancellable,
                         Done done,
                         Limit limit) {
    if (!m_process) {
        Glib::signal_idle().connect_once([done = std::move(done)] { done({}); },
                                         Glib::PRIORITY_DEFAULT);
        return;
    }
    auto running = std::make_unique<Running>(
        Running{std::move(m_process), std::move(input), std::move(done), {}});
    auto* const process = running->process.get();
    if (limit) {
        const auto end = [process] {
            g_subprocess_force_exit(process);
            return false;
        };
        running->timer = Glib::signal_timeout().connect(end, static_cast<unsigned>(limit->count()));
    }
    // A helper that ends before it has read everything must not end this program.
    std::signal(SIGPIPE, SIG_IGN);
    const Handle<GBytes, g_bytes_unref> bytes(
        g_bytes_new_static(running->input.data(), running->input.size()));
    g_subprocess_communicate_async(process, bytes.get(),
                                   cancellable ? cancellable->gobj() : nullptr, finished,
                                   running.release());
}

}  // namespace corvel
