#pragma once

#include "ai/AIConnection.h"
#include "ai/AIProviderService.h"

namespace corvel {

/// The streaming content API of Google Gemini.
class GeminiProvider : public AIProviderService {
public:
    GeminiProvider(AIConnection connection, std::string apiKey, std::string model)
        : m_connection(std::move(connection))
        , m_apiKey(std::move(apiKey))
        , m_model(std::move(model)) {}

    AIProviderType providerType() const override { return AIProviderType::gemini; }
    std::unique_ptr<TextStream> streamMessage(const std::vector<AIMessage>& messages,
                                              const std::string& systemPrompt,
                                              int maxTokens,
                                              TextStream::Handler handler) const override;

private:
    AIConnection m_connection;
    std::string m_apiKey;
    std::string m_model;
};

}  // namespace corvel
