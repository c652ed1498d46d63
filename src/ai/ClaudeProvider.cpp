#include "ai/ClaudeProvider.h"

#include "ai/AIRequestBody.h"
#include "ai/JsonString.h"
#include "ai/ReplyReader.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace corvel {

namespace {

std::optional<std::string> pieceOf(std::string_view payload) {
    static const std::vector<JsonPath> kPaths{{"type"}, {"delta", "text"}};
    auto found = jsonStringsAt(payload, kPaths);
    return found[0] == "content_block_delta" ? std::move(found[1]) : std::nullopt;
}

constexpr ReplyFormat kFormat{pieceOf, "", isPast500Characters, errorMessageIn};

}  // namespace

std::unique_ptr<TextStream> ClaudeProvider::streamMessage(const std::vector<AIMessage>& messages,
                                                          const std::string& systemPrompt,
                                                          int maxTokens,
                                                          TextStream::Handler handler) const {
    const nlohmann::json body{{"model", m_model},
                              {"max_tokens", maxTokens},
                              {"system", systemPrompt},
                              {"messages", wireMessages(messages)},
                              {"stream", true}};
    auto request =
        jsonRequest(m_connection.url("/v1/messages"),
                    {{"x-api-key", m_apiKey}, {"anthropic-version", "2023-06-01"}}, body);
    return ReplyReader::ask(m_connection.http, std::move(request), kFormat, m_apiKey,
                            std::move(handler));
}

}  // namespace corvel
