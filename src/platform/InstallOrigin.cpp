#include "platform/InstallOrigin.h"

#include <string_view>
#include <system_error>
#include <utility>

namespace corvel {

namespace fs = std::filesystem;

struct InstallOriginQuery::Call {
    InstallOriginQuery* query;
    std::weak_ptr<int> alive;
};

InstallOriginQuery::InstallOriginQuery(const Places& places, Done done)
    : m_done(std::move(done)), m_cancellable(g_cancellable_new()) {
    std::error_code error;
    if (fs::exists(places.flatpakInfo, error)) {
        m_done({InstallOrigin::Kind::flatpak});
        return;
    }
    const auto executable = fs::canonical(places.executable, error);
    if (!error) {
        m_tool.reset(g_subprocess_new(
            static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                          G_SUBPROCESS_FLAGS_STDERR_SILENCE),
            nullptr, places.packageTool.c_str(), "--search", executable.c_str(), nullptr));
    }
    if (!m_tool) {
        m_done({});
        return;
    }
    const auto ended = [](GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> call(static_cast<Call*>(data));
        if (!call->alive.expired()) call->query->answered(result);
    };
    g_subprocess_communicate_utf8_async(m_tool.get(), nullptr, m_cancellable.get(), ended,
                                        new Call{this, m_alive});
}

InstallOriginQuery::~InstallOriginQuery() {
    g_cancellable_cancel(m_cancellable.get());
    if (m_tool) g_subprocess_force_exit(m_tool.get());
}

// "package: /path", or "package:architecture: /path"
void InstallOriginQuery::answered(GAsyncResult* result) {
    char* raw = nullptr;
    const bool isRead =
        g_subprocess_communicate_utf8_finish(m_tool.get(), result, &raw, nullptr, nullptr) != FALSE;
    const Handle<char, g_free> text(raw);
    const bool isFound = isRead && g_subprocess_get_successful(m_tool.get()) != FALSE;
    const std::string_view line = isFound && text ? text.get() : "";
    std::string package(line.substr(0, line.find(':')));
    const auto kind = package.empty() ? InstallOrigin::Kind::built : InstallOrigin::Kind::package;
    const auto done = m_done;
    done({kind, std::move(package)});
}

}  // namespace corvel
