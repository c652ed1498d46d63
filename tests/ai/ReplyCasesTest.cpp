#include "ai/AITestSettings.h"
#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
#include "support/FileContent.h"
#include "support/MainLoop.h"
#include "support/ScriptedServer.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace corvel {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<AIProviderService> providerFor(const std::string& name, AIConnection connection) {
    if (name.starts_with("claude")) {
        return std::make_unique<ClaudeProvider>(std::move(connection), "secret", "model");
    }
    if (name.starts_with("openai")) {
        return std::make_unique<OpenAIProvider>(std::move(connection), "secret", "model");
    }
    return std::make_unique<GeminiProvider>(std::move(connection), "secret", "model");
}

// The pieces, one a line as JSON strings, and how the reply ended.
std::string outcome(const AIProviderService& provider, const Localisation& texts) {
    std::string written;
    bool isEnded = false;
    const auto stream = provider.streamMessage(
        {{.content = "Hello"}}, "", 10,
        {[&](std::string_view piece) { written += nlohmann::json(piece).dump() + "\n"; },
         [&](const auto& error) {
             isEnded = true;
             written += error ? "error: " + error->description(texts) + "\n" : "end\n";
         }});
    EXPECT_TRUE(turnUntil([&] { return isEnded; }));
    return written;
}

// Each folder of cases/ holds answer.txt, a status line and a body as a service sends it, and the
// outcome.txt it must give. With CORVEL_RECORD_CASES set the outcomes are written anew, to be
// reviewed as a change.
TEST(ReplyCases, GiveThePiecesAsRecorded) {
    const bool records = std::getenv("CORVEL_RECORD_CASES") != nullptr;
    const AITestSettings settings;
    const HttpClient http;
    ScriptedServer server;
    int count = 0;
    for (const auto& folder : fs::directory_iterator(fs::path(CORVEL_TEST_DATA) / "ai/cases")) {
        const auto answer = contentOf(folder.path() / "answer.txt");
        const auto body = answer.substr(answer.find('\n') + 1);
        const auto provider = providerFor(folder.path().filename(), {http, server.url()});
        server.answer(std::stoi(answer), body);
        const auto whole = outcome(*provider, settings.texts);
        const fs::path expected = folder.path() / "outcome.txt";
        if (records) std::ofstream(expected, std::ios::binary) << whole;
        EXPECT_EQ(whole, contentOf(expected)) << folder.path();

        server.answer({"HTTP/1.1 " + answer.substr(0, 3) + " Status\r\n\r\n" + body, 1});
        EXPECT_EQ(outcome(*provider, settings.texts), whole) << "in single bytes";
        ++count;
    }
    EXPECT_GE(count, 18);
}

}  // namespace
}  // namespace corvel
