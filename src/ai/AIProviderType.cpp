#include "ai/AIProviderType.h"

#include <algorithm>

namespace corvel {

namespace {

constexpr std::array<AIModel, 4> kClaudeModels{{
    {"claude-sonnet-4-5-20250929", "Sonnet 4.5"},
    {"claude-haiku-4-5-20251001", "Haiku 4.5"},
    {"claude-sonnet-4-20250514", "Sonnet 4"},
    {"claude-haiku-4-20250514", "Haiku 4"},
}};
constexpr std::array<AIModel, 4> kOpenAIModels{{
    {"gpt-4o", "GPT-4o"},
    {"gpt-4o-mini", "GPT-4o mini"},
    {"o3-mini", "o3-mini"},
    {"gpt-4-turbo", "GPT-4 Turbo"},
}};
constexpr std::array<AIModel, 4> kGeminiModels{{
    {"gemini-2.0-flash", "2.0 Flash"},
    {"gemini-2.0-flash-lite", "2.0 Flash Lite"},
    {"gemini-1.5-pro", "1.5 Pro"},
    {"gemini-1.5-flash", "1.5 Flash"},
}};

struct Row {
    const char* rawValue;
    const char* displayName;
    std::span<const AIModel> models;
};

// In the order of the cases.
constexpr std::array<Row, kAIProviderTypes.size()> kRows{{
    {"claude", "Claude (Anthropic)", kClaudeModels},
    {"openai", "ChatGPT (OpenAI)", kOpenAIModels},
    {"gemini", "Gemini (Google)", kGeminiModels},
}};

const Row& rowOf(AIProviderType type) {
    return kRows.at(static_cast<std::size_t>(type));
}

}  // namespace

const char* rawValue(AIProviderType type) {
    return rowOf(type).rawValue;
}

std::optional<AIProviderType> providerTypeOf(std::string_view rawValue) {
    for (const auto type : kAIProviderTypes) {
        if (rawValue == rowOf(type).rawValue) return type;
    }
    return std::nullopt;
}

const char* displayName(AIProviderType type) {
    return rowOf(type).displayName;
}

std::span<const AIModel> modelsOf(AIProviderType type) {
    return rowOf(type).models;
}

std::string modelLabel(AIProviderType type, const std::string& identifier) {
    const auto models = modelsOf(type);
    const auto found = std::ranges::find(models, identifier, &AIModel::identifier);
    return found == models.end() ? identifier : found->label;
}

}  // namespace corvel
