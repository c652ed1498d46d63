#pragma once

#include "ai/AIMessage.h"
#include "ai/AIProviderType.h"
#include "ai/TextStream.h"

#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// One of the services, ready to be asked. Keeps nothing between the calls; a stream may outlive
/// the service that made it.
class AIProviderService {
public:
    virtual ~AIProviderService() = default;

    virtual AIProviderType providerType() const = 0;

    /// Asks for the next message of a conversation, of at most `maxTokens` tokens. Messages of the
    /// role `system` are left out: `systemPrompt` stands in their place.
    [[nodiscard]] virtual std::unique_ptr<TextStream> streamMessage(
        const std::vector<AIMessage>& messages,
        const std::string& systemPrompt,
        int maxTokens,
        TextStream::Handler handler) const = 0;
};

}  // namespace corvel
