#pragma once

#include "app/settings/Localisation.h"
#include "platform/HttpError.h"

#include <optional>
#include <string>

namespace corvel {

/// Why a reply did not come, or not whole. Never holds the key.
class AIError {
public:
    enum class Kind {
        httpError,
        streamingError,
        noAPIKey,
        invalidResponse,
        cancelled,
        transport,  ///< the network's own; see `transport`
    };

    static AIError http(unsigned status, std::optional<std::string> message);
    static AIError streaming(std::string message);
    static AIError of(HttpError error);
    explicit AIError(Kind kind) : m_kind(kind) {}

    Kind kind() const { return m_kind; }
    /// Of `httpError`.
    unsigned status() const { return m_status; }
    /// What the service says, of `httpError` and `streamingError`.
    const std::optional<std::string>& message() const { return m_message; }
    /// Of `transport`.
    const std::optional<HttpError>& transport() const { return m_transport; }

    /// The sentence for the user.
    std::string description(const Localisation& texts) const;

private:
    Kind m_kind;
    unsigned m_status = 0;
    std::optional<std::string> m_message;
    std::optional<HttpError> m_transport;
};

}  // namespace corvel
