#include "ai/AIRequestBody.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace corvel {

using nlohmann::json;

json wireMessages(const std::vector<AIMessage>& messages) {
    json list = json::array();
    for (const auto& message : messages) {
        if (message.role == AIMessage::Role::system) continue;
        const bool isUser = message.role == AIMessage::Role::user;
        list.push_back({{"role", isUser ? "user" : "assistant"}, {"content", message.content}});
    }
    return list;
}

HttpRequest jsonRequest(std::string url,
                        std::vector<std::pair<std::string, std::string>> headers,
                        const json& body) {
    constexpr int kOneLine = -1;
    return {std::move(url), std::move(headers), "application/json",
            body.dump(kOneLine, ' ', false, json::error_handler_t::replace)};
}

}  // namespace corvel
