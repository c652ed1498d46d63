#include "ai/GeminiError.h"

#include "ai/JsonString.h"
#include "ai/OuterSpace.h"
#include "platform/Text.h"

namespace corvel {

namespace {

std::string shortened(std::string_view text) {
    constexpr std::size_t kMostCharacters = 200;
    return std::string(text::prefixByGraphemes(text.substr(0, text.find('\n')), kMostCharacters));
}

// What follows a "message" key in a text that is no whole JSON: "message"\s*:\s*"([^"]+)
std::optional<std::string_view> looseMessage(std::string_view body) {
    constexpr std::string_view kKey = "\"message\"";
    for (auto at = body.find(kKey); at != body.npos; at = body.find(kKey, at + 1)) {
        auto rest = withoutOuterSpace(body.substr(at + kKey.size()));
        if (!rest.starts_with(':')) continue;
        rest = withoutOuterSpace(rest.substr(1));
        if (!rest.starts_with('"')) continue;
        rest.remove_prefix(1);
        const auto message = rest.substr(0, rest.find('"'));
        if (!message.empty()) return message;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> geminiErrorMessage(std::string_view body) {
    static const std::vector<JsonPath> kPaths{{"error", "message"},
                                              {kFirstElement, "error", "message"}};
    for (auto& message : jsonStringsAt(body, kPaths)) {
        if (message) return std::move(message);
    }
    auto message = shortened(looseMessage(body).value_or(body));
    if (message.empty()) return std::nullopt;
    return message;
}

}  // namespace corvel
