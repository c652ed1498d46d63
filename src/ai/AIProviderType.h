#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace corvel {

/// The services the assistant can talk to, in the order of the pickers.
enum class AIProviderType { claude, openai, gemini };

inline constexpr std::array kAIProviderTypes{AIProviderType::claude, AIProviderType::openai,
                                             AIProviderType::gemini};

struct AIModel {
    const char* identifier;
    const char* label;
};

const char* rawValue(AIProviderType type);
std::optional<AIProviderType> providerTypeOf(std::string_view rawValue);
const char* displayName(AIProviderType type);
/// The known models in the order of the picker; the first one is the default.
std::span<const AIModel> modelsOf(AIProviderType type);
/// The short name of a model; of an unknown one its identifier.
std::string modelLabel(AIProviderType type, const std::string& identifier);

}  // namespace corvel
