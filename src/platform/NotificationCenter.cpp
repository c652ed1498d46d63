#include "platform/NotificationCenter.h"

#include "platform/MainThread.h"

#include <utility>

namespace corvel {

void NotificationCenter::post(std::string_view name, const std::any& payload) {
    checkMainThread();
    const auto found = m_signals.find(name);
    if (found != m_signals.end()) found->second.emit(payload);
}

ScopedConnection NotificationCenter::observe(std::string_view name, const Observer& observer) {
    return m_signals[std::string(name)].connect(observer);
}

}  // namespace corvel
