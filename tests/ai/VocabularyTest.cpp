#include "ai/AIDocumentAction.h"
#include "ai/AIEndpoint.h"
#include "ai/AIProviderType.h"
#include "ai/AIQuickAction.h"
#include "ai/AISystemPrompt.h"
#include "ai/AITestSettings.h"

#include <gmock/gmock.h>

#include <set>

namespace corvel {
namespace {

using testing::StartsWith;

TEST(Vocabulary, EveryCaseHasARawValueOfItsOwn) {
    std::set<std::string> values;
    for (const auto action : kAIQuickActions) {
        values.insert(rawValue(action));
        EXPECT_NE(std::string(labelOf(action).polish), labelOf(action).english);
    }
    EXPECT_EQ(values.size(), 8U);
    values.clear();
    for (const auto action : kAIDocumentActions)
        values.insert(rawValue(action));
    EXPECT_EQ(values.size(), 8U);
    for (const auto type : kAIProviderTypes)
        EXPECT_EQ(providerTypeOf(rawValue(type)), type);
    EXPECT_EQ(providerTypeOf("Claude"), std::nullopt);
}

TEST(Vocabulary, ADefaultModelIsTheFirstOfItsListAndAnUnknownOneNamesItself) {
    const AITestSettings settings;
    for (const auto type : kAIProviderTypes) {
        EXPECT_EQ(settings.preferences.aiModel(rawValue(type)), modelsOf(type)[0].identifier);
    }
    EXPECT_EQ(modelLabel(AIProviderType::gemini, "gemini-1.5-pro"), "1.5 Pro");
    EXPECT_EQ(modelLabel(AIProviderType::gemini, "gpt-4o"), "gpt-4o");
}

TEST(SystemPrompt, HasASectionForEachPartThatIsThere) {
    const std::string base = chatSystemPrompt("", "", "");
    EXPECT_THAT(base, StartsWith("Jesteś asystentem pisania"));
    EXPECT_TRUE(base.ends_with("wykonać polecenie."));
    EXPECT_EQ(base.find("##"), base.npos);
    EXPECT_EQ(chatSystemPrompt("T", "S", "C"),
              base +
                  "\n\n## TYTUŁ NOTATKI\nT"
                  "\n\n## ZAZNACZONY TEKST (aktualnie zaznaczony w edytorze)\nS"
                  "\n\n## PEŁNA TREŚĆ NOTATKI\nC");
    EXPECT_EQ(chatSystemPrompt("", "S", ""),
              base + "\n\n## ZAZNACZONY TEKST (aktualnie zaznaczony w edytorze)\nS");
}

TEST(SystemPrompt, CutsTheContentAfterTwentyThousandCharactersAsPeopleCountThem) {
    const std::string family = "👨‍👩‍👧";
    std::string content;
    for (int i = 0; i < 20'000; ++i)
        content += i % 2 == 0 ? family : "e\u0301";
    const std::string before = chatSystemPrompt("", "", "") + "\n\n## PEŁNA TREŚĆ NOTATKI\n";
    EXPECT_EQ(chatSystemPrompt("", "", content), before + content);
    EXPECT_EQ(chatSystemPrompt("", "", content + "x"), before + content + "\n[...obcięto...]");
    const std::string selection(30'000, 's');
    EXPECT_NE(chatSystemPrompt("", selection, "").find(selection), std::string::npos);
}

TEST(Endpoint, IsTheServiceItselfOrASafeAddressFromThePreferences) {
    AITestSettings settings;
    const auto endpointFor = [&](const std::string& address) {
        settings.defaults.setString("aiEndpoint_openai", address);
        return endpointOf(AIProviderType::openai, settings.defaults);
    };
    EXPECT_THAT(*endpointOf(AIProviderType::openai, settings.defaults), StartsWith("https://"));
    for (const char* good : {"https://gateway.example/openai", "http://127.0.0.1:8080",
                             "http://localhost", "http://[::1]:80", "HTTPS://gateway.example"}) {
        EXPECT_EQ(endpointFor(good), good);
    }
    EXPECT_EQ(endpointFor("https://gateway.example/a//"), "https://gateway.example/a");
    for (const char* bad :
         {"http://gateway.example", "http://127.0.0.1.example", "http://localhost.example",
          "http://localhost@gateway.example", "ftp://127.0.0.1", "gateway.example", "https://", "",
          "https://gateway.example/?x=", "https://gateway.example/#", "file:///etc/passwd"}) {
        EXPECT_EQ(endpointFor(bad), std::nullopt) << bad;
    }
}

}  // namespace
}  // namespace corvel
