#include "ai/ReplyFormat.h"

#include "ai/JsonString.h"
#include "platform/Text.h"

namespace corvel {

bool isPast500Characters(std::string_view body, std::size_t) {
    return text::prefixByGraphemes(body, 500).size() < body.size();
}

std::optional<std::string> errorMessageIn(std::string_view body) {
    static const std::vector<JsonPath> kPaths{{"error", "message"}};
    return jsonStringsAt(body, kPaths).front();
}

}  // namespace corvel
