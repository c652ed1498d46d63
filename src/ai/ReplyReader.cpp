#include "ai/ReplyReader.h"

#include "ai/OuterSpace.h"
#include "platform/Handle.h"
#include "platform/Text.h"

#include <glib.h>

#include <utility>

namespace corvel {

namespace {

constexpr unsigned kGood = 200;
constexpr std::size_t kLongestMessage = 2000;  // characters; it is to be read by people
constexpr std::string_view kMark = "data:";

void replaceAll(std::string& text, const std::string& what, std::string_view with) {
    if (what.empty()) return;
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

}  // namespace

ReplyReader::ReplyReader(const ReplyFormat& format, std::string key, TextStream::Handler handler)
    : m_format(format), m_key(std::move(key)), m_handler(std::move(handler)) {}

std::unique_ptr<TextStream> ReplyReader::ask(const HttpClient& http,
                                             HttpRequest request,
                                             const ReplyFormat& format,
                                             std::string key,
                                             TextStream::Handler handler) {
    // Held by the calls of the transfer, which see to it that it outlives a call that ends it.
    const auto reader = std::make_shared<ReplyReader>(format, std::move(key), std::move(handler));
    return std::make_unique<TextStream>(
        http.post(std::move(request), {[reader](unsigned status) { reader->status(status); },
                                       [reader](std::string_view line) { reader->line(line); },
                                       [reader](const auto& error) { reader->ended(error); }}));
}

void ReplyReader::line(std::string_view line) {
    if (m_isOver) return;
    if (m_status != kGood) return errorLine(line);
    line = withoutOuterSpace(line);
    if (!line.starts_with(kMark)) return;
    const auto payload = withoutOuterSpace(line.substr(kMark.size()));
    if (payload.empty() || payload == "[DONE]") return;
    if (const auto piece = m_format.pieceOf(payload)) m_handler.piece(*piece);
}

void ReplyReader::errorLine(std::string_view line) {
    if (m_errorLines++ > 0) m_errorBody += m_format.errorLineSeparator;
    m_errorBody += line;
    if (m_format.isErrorComplete(m_errorBody, m_errorLines)) ended(std::nullopt);
}

void ReplyReader::ended(const std::optional<HttpError>& error) {
    if (m_isOver) return;
    // A status says more than that the explanation of it broke off.
    if (m_status != 0 && m_status != kGood) {
        auto message = m_format.errorMessageOf(m_errorBody);
        if (message) {
            message = withoutKey(std::string(text::prefixByGraphemes(*message, kLongestMessage)));
        }
        return end(AIError::http(m_status, std::move(message)));
    }
    if (!error) return end(std::nullopt);
    end(AIError::of({error->kind, withoutKey(error->detail)}));
}

void ReplyReader::end(const std::optional<AIError>& error) {
    m_isOver = true;
    m_handler.ended(error);
}

std::string ReplyReader::withoutKey(std::string text) const {
    const Handle<char, g_free> escaped(g_uri_escape_string(m_key.c_str(), nullptr, FALSE));
    replaceAll(text, m_key, "…");
    replaceAll(text, escaped.get(), "…");
    return text;
}

}  // namespace corvel
