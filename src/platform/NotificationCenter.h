#pragma once

#include "platform/ScopedConnection.h"

#include <sigc++/signal.h>

#include <any>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace corvel {

/// Broadcasts named notifications between the commands and the view models, on the main thread.
/// Observers are called in the order in which they were added, before `post` returns.
class NotificationCenter {
public:
    using Observer = std::function<void(const std::any& payload)>;

    void post(std::string_view name, const std::any& payload = {});

    /// The observer is removed when the returned connection is destroyed.
    [[nodiscard]] ScopedConnection observe(std::string_view name, const Observer& observer);

private:
    std::map<std::string, sigc::signal<void(const std::any&)>, std::less<>> m_signals;
};

}  // namespace corvel
