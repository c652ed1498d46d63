#include "platform/FileMonitor.h"

#include "platform/Log.h"
#include "platform/Text.h"

#include <glibmm/main.h>

#include <utility>

namespace corvel {

void FileMonitor::watch(const std::filesystem::path& path) {
    stop();
    m_isWatching = true;
    add(path);
    // A link is watched where it lies, and the file where that is.
    std::error_code error;
    const auto target = std::filesystem::weakly_canonical(path, error);
    if (!error && target != path) add(target);
}

void FileMonitor::add(const std::filesystem::path& path) {
    const GObjectHandle<GFile> file(g_file_new_for_path(path.c_str()));
    GObjectHandle<GFileMonitor> monitor(
        g_file_monitor_file(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, nullptr));
    if (!monitor) return logLine("Error watching file: " + text::repaired(path.string()));
    g_file_monitor_set_rate_limit(monitor.get(), static_cast<int>(kInterval.count()));
    g_signal_connect_swapped(monitor.get(), "changed",
                             G_CALLBACK(+[](FileMonitor* self) { self->notice(); }), this);
    m_watches.push_back(std::move(monitor));
}

void FileMonitor::stop() {
    for (const auto& monitor : m_watches)
        g_signal_handlers_disconnect_by_data(monitor.get(), this);
    m_watches.clear();
    m_isWatching = false;
    m_interval.disconnect();
    m_isWaiting = false;
}

void FileMonitor::notice() {
    if (m_interval.connected()) {
        m_isWaiting = true;
        return;
    }
    m_interval = Glib::signal_timeout().connect(
        [this] {
            m_interval.disconnect();
            if (std::exchange(m_isWaiting, false)) notice();
            return false;
        },
        static_cast<unsigned>(kInterval.count()));
    m_changed.emit();
}

}  // namespace corvel
