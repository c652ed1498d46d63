#include "ai/AIProviderFactory.h"

#include "ai/AIEndpoint.h"
#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"

#include <utility>

namespace corvel {

void AIProviderFactory::makeProvider(AIProviderType type, Made done) {
    m_keychain.readKey(type, [this, type, done = std::move(done)](auto key) {
        done(key && !key->empty() ? providerWith(type, *key) : nullptr);
    });
}

void AIProviderFactory::hasKey(AIProviderType type, std::function<void(bool)> done) {
    m_keychain.hasKey(type, std::move(done));
}

std::unique_ptr<AIProviderService> AIProviderFactory::providerWith(AIProviderType type,
                                                                   const std::string& key) const {
    AIConnection connection{m_http, endpointOf(type, m_preferences.store())};
    auto model = m_preferences.aiModel(rawValue(type));
    switch (type) {
        case AIProviderType::claude:
            return std::make_unique<ClaudeProvider>(std::move(connection), key, std::move(model));
        case AIProviderType::openai:
            return std::make_unique<OpenAIProvider>(std::move(connection), key, std::move(model));
        case AIProviderType::gemini:
            break;
    }
    return std::make_unique<GeminiProvider>(std::move(connection), key, std::move(model));
}

}  // namespace corvel
