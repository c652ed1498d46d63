#include "ai/TextStream.h"

#include <glibmm/main.h>

#include <utility>

namespace corvel {

TextStream::TextStream(const AIError& error, Handler handler) {
    const auto held = std::make_shared<const Handler>(std::move(handler));
    m_end = Glib::signal_idle().connect([held, error] {
        // Copies: the call may destroy this stream and with it what this function holds.
        const auto called = held;  // NOLINT(performance-unnecessary-copy-initialization)
        const std::optional<AIError> reason = error;
        called->ended(reason);
        return false;
    });
}

}  // namespace corvel
