#pragma once

#include "platform/Date.h"
#include "platform/Uuid.h"

#include <string>

namespace corvel {

/// One message of a chat.
struct AIMessage {
    enum class Role { user, assistant, system };

    Uuid id = Uuid::random();
    Role role = Role::user;
    std::string content;  ///< Markdown; an assistant's grows while it arrives
    Date timestamp = Date::now();
    bool isStreaming = false;  ///< the reply that fills it is still arriving

    bool operator==(const AIMessage&) const = default;
};

/// The role's name as services know it.
constexpr const char* rawValue(AIMessage::Role role) {
    switch (role) {
        case AIMessage::Role::user:
            return "user";
        case AIMessage::Role::assistant:
            return "assistant";
        case AIMessage::Role::system:
            break;
    }
    return "system";
}

}  // namespace corvel
