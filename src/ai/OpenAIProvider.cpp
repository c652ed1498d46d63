#include "ai/OpenAIProvider.h"

#include "ai/AIRequestBody.h"
#include "ai/JsonString.h"
#include "ai/ReplyReader.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace corvel {

namespace {

std::optional<std::string> pieceOf(std::string_view payload) {
    static const std::vector<JsonPath> kPaths{{"choices", kFirstElement, "delta", "content"}};
    return std::move(jsonStringsAt(payload, kPaths).front());
}

constexpr ReplyFormat kFormat{pieceOf, "", isPast500Characters, errorMessageIn};

}  // namespace

std::unique_ptr<TextStream> OpenAIProvider::streamMessage(const std::vector<AIMessage>& messages,
                                                          const std::string& systemPrompt,
                                                          int maxTokens,
                                                          TextStream::Handler handler) const {
    auto sent = wireMessages(messages);
    // Spelled out: in braces the arguments would be taken for a range of elements.
    const nlohmann::json system{{"role", "system"}, {"content", systemPrompt}};
    sent.insert(sent.begin(), system);
    const nlohmann::json body{{"model", m_model},
                              {"max_tokens", maxTokens},
                              {"messages", std::move(sent)},
                              {"stream", true}};
    auto request = jsonRequest(m_connection.url("/v1/chat/completions"),
                               {{"Authorization", "Bearer " + m_apiKey}}, body);
    return ReplyReader::ask(m_connection.http, std::move(request), kFormat, m_apiKey,
                            std::move(handler));
}

}  // namespace corvel
