#pragma once

#include "ai/AIError.h"
#include "platform/HttpTransfer.h"
#include "platform/ScopedConnection.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace corvel {

/// A reply that is under way. Destroyed, it drops the transfer and nothing more is called; each of
/// the calls may do that.
class TextStream {
public:
    /// Called on the main loop, never before the stream has been handed out.
    struct Handler {
        std::function<void(std::string_view piece)> piece;  ///< in order; together the reply
        std::function<void(const std::optional<AIError>& error)> ended;  ///< once, the last call
    };

    explicit TextStream(std::unique_ptr<HttpTransfer> transfer) : m_transfer(std::move(transfer)) {}
    /// A stream that only ends, with `error`.
    TextStream(const AIError& error, Handler handler);

private:
    std::unique_ptr<HttpTransfer> m_transfer;
    ScopedConnection m_end;
};

}  // namespace corvel
