#pragma once

#include <glibmm/main.h>

#include <chrono>
#include <functional>

namespace corvel {

/// Turns the main loop until `isTrue` holds; false when `limit` has passed first.
inline bool turnUntil(const std::function<bool()>& isTrue,
                      std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto context = Glib::MainContext::get_default();
    bool isLate = false;
    auto timer = Glib::signal_timeout().connect(
        [&] {
            isLate = true;
            return false;
        },
        static_cast<unsigned>(limit.count()));
    while (!isTrue() && !isLate) {
        context->iteration(true);
    }
    timer.disconnect();
    return isTrue();
}

}  // namespace corvel
