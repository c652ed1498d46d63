#pragma once

#include "ai/HostedProvider.h"

namespace corvel {

/// The chat completions API of OpenAI.
class OpenAIProvider : public HostedProvider {
public:
    using HostedProvider::HostedProvider;

    AIProviderType providerType() const override { return AIProviderType::openai; }
    std::unique_ptr<TextStream> streamMessage(const std::vector<AIMessage>& messages,
                                              const std::string& systemPrompt,
                                              int maxTokens,
                                              TextStream::Handler handler) const override;
};

}  // namespace corvel
