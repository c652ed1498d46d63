#pragma once

#include "ai/HostedProvider.h"

namespace corvel {

/// The streaming content API of Google Gemini.
class GeminiProvider : public HostedProvider {
public:
    using HostedProvider::HostedProvider;

    AIProviderType providerType() const override { return AIProviderType::gemini; }
    std::unique_ptr<TextStream> streamMessage(const std::vector<AIMessage>& messages,
                                              const std::string& systemPrompt,
                                              int maxTokens,
                                              TextStream::Handler handler) const override;
};

}  // namespace corvel
