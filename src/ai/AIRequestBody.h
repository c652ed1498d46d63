#pragma once

#include "ai/AIMessage.h"
#include "platform/HttpTransfer.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace corvel {

/// `messages` as objects with "role" and "content", without those of the role `system`.
nlohmann::json wireMessages(const std::vector<AIMessage>& messages);

/// A request with a JSON body. Bytes of a text that are not UTF-8 are sent as U+FFFD.
HttpRequest jsonRequest(std::string url,
                        std::vector<std::pair<std::string, std::string>> headers,
                        const nlohmann::json& body);

}  // namespace corvel
