#pragma once

#include "platform/Handle.h"
#include "platform/ScopedConnection.h"

#include <gio/gio.h>
#include <sigc++/signal.h>

#include <chrono>
#include <filesystem>
#include <vector>

namespace corvel {

/// Tells when a file may have changed, gone or come: at once, and then, however often it changes,
/// at most once an interval; the last change is always told. What changed only a look at the file
/// says.
class FileMonitor {
public:
    FileMonitor() = default;
    FileMonitor(const FileMonitor&) = delete;
    FileMonitor& operator=(const FileMonitor&) = delete;
    ~FileMonitor() { stop(); }

    static constexpr std::chrono::milliseconds kInterval{100};

    /// Watches this file instead of another, through links. The file need not exist. Where the
    /// system cannot watch it, `notice` alone tells.
    void watch(const std::filesystem::path& path);
    void stop();
    bool isWatching() const { return m_isWatching; }
    /// To be called by whoever suspects a change; counts as an event.
    void notice();

    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    void add(const std::filesystem::path& path);

    std::vector<GObjectHandle<GFileMonitor>> m_watches;
    bool m_isWatching = false;
    bool m_isWaiting = false;  ///< another event came within the interval
    ScopedConnection m_interval;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
