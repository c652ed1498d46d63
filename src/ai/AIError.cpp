#include "ai/AIError.h"

#include "ai/AssistantTexts.h"

#include <utility>

namespace corvel {

namespace {

std::string descriptionOf(const HttpError& error, const Localisation& texts) {
    switch (error.kind) {
        case HttpError::Kind::badRequest:
            return texts(texts::assistantBadRequest);
        case HttpError::Kind::unreachable:
            return texts.format(texts::assistantUnreachable, {error.detail});
        case HttpError::Kind::certificate:
            return texts(texts::assistantCertificate);
        case HttpError::Kind::redirected:
            return texts(texts::assistantRedirected);
        case HttpError::Kind::timedOut:
            return texts(texts::assistantTimedOut);
        case HttpError::Kind::lineTooLong:
            return texts(texts::assistantLineTooLong);
        case HttpError::Kind::notHttp:
            break;
    }
    return AIError(AIError::Kind::invalidResponse).description(texts);
}

}  // namespace

AIError AIError::http(unsigned status, std::optional<std::string> message) {
    AIError error(Kind::httpError);
    error.m_status = status;
    error.m_message = std::move(message);
    return error;
}

AIError AIError::streaming(std::string message) {
    AIError error(Kind::streamingError);
    error.m_message = std::move(message);
    return error;
}

AIError AIError::of(HttpError error) {
    if (error.kind == HttpError::Kind::notHttp) return AIError(Kind::invalidResponse);
    AIError result(Kind::transport);
    result.m_transport = std::move(error);
    return result;
}

std::string AIError::description(const Localisation& texts) const {
    switch (m_kind) {
        case Kind::httpError:
            return "HTTP " + std::to_string(m_status) + (m_message ? ": " + *m_message : "");
        case Kind::streamingError:
            return m_message.value_or("");
        case Kind::noAPIKey:
            return "Configure API key in Settings → AI Assistant";
        case Kind::invalidResponse:
            return "Invalid response from AI provider";
        case Kind::cancelled:
            return "Cancelled";
        case Kind::transport:
            break;
    }
    return m_transport ? descriptionOf(*m_transport, texts) : "";
}

}  // namespace corvel
