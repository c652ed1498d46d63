#include "ai/GeminiProvider.h"

#include "ai/AIRequestBody.h"
#include "ai/GeminiError.h"
#include "ai/JsonString.h"
#include "ai/ReplyReader.h"
#include "platform/Handle.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <utility>

namespace corvel {

namespace {

using nlohmann::json;

std::optional<std::string> pieceOf(std::string_view payload) {
    static const std::vector<JsonPath> kPaths{
        {"candidates", kFirstElement, "content", "parts", kFirstElement, "text"}};
    return std::move(jsonStringsAt(payload, kPaths).front());
}

bool isPast50Lines(std::string_view, std::size_t lineCount) {
    return lineCount > 50;
}

constexpr ReplyFormat kFormat{pieceOf, "\n", isPast50Lines, geminiErrorMessage};

json turn(const std::string& role, const std::string& text) {
    return {{"role", role}, {"parts", json::array({{{"text", text}}})}};
}

// Turns of user and model alternate, and the user begins.
json contentsOf(const std::vector<AIMessage>& messages) {
    json contents = json::array();
    for (const auto& message : messages) {
        if (message.role == AIMessage::Role::system || message.content.empty()) continue;
        const std::string role = message.role == AIMessage::Role::user ? "user" : "model";
        if (!contents.empty() && contents.back()["role"] == role) {
            contents.back()["parts"].push_back({{"text", message.content}});
        } else {
            contents.push_back(turn(role, message.content));
        }
    }
    if (!contents.empty() && contents.front()["role"] != "user") {
        contents.insert(contents.begin(), turn("user", " "));
    }
    return contents;
}

// Letters, digits and "-._~" stay as they are, which is all that keys and models are made of.
std::string escaped(const std::string& text) {
    const Handle<char, g_free> form(g_uri_escape_string(text.c_str(), nullptr, FALSE));
    return form.get();
}

}  // namespace

std::unique_ptr<TextStream> GeminiProvider::streamMessage(const std::vector<AIMessage>& messages,
                                                          const std::string& systemPrompt,
                                                          int maxTokens,
                                                          TextStream::Handler handler) const {
    auto contents = contentsOf(messages);
    if (contents.empty()) {
        return std::make_unique<TextStream>(AIError(AIError::Kind::invalidResponse),
                                            std::move(handler));
    }
    const json body{{"contents", std::move(contents)},
                    {"systemInstruction", {{"parts", json::array({{{"text", systemPrompt}}})}}},
                    {"generationConfig", {{"maxOutputTokens", maxTokens}}}};
    auto url = m_connection.url("/v1beta/models/" + escaped(m_model) +
                                ":streamGenerateContent?alt=sse&key=" + escaped(m_apiKey));
    return ReplyReader::ask(m_connection.http, jsonRequest(std::move(url), {}, body), kFormat,
                            m_apiKey, std::move(handler));
}

}  // namespace corvel
