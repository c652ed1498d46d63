#include "ai/AITestSettings.h"
#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"
#include "support/MainLoop.h"
#include "support/ScriptedServer.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace corvel {
namespace {

using namespace std::chrono_literals;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using Role = AIMessage::Role;

AIMessage message(Role role, const std::string& content) {
    return {.role = role, .content = content};
}

class ProviderTest : public testing::Test {
protected:
    struct Reply {
        std::string text;
        bool isEnded = false;
        std::optional<AIError> error;
    };

    ProviderTest() { server.answer(200, ""); }

    AIConnection connection() const { return {http, server.url()}; }
    Reply ask(const AIProviderService& provider, const std::vector<AIMessage>& messages) {
        Reply reply;
        const auto stream =
            provider.streamMessage(messages, "Be kind.", 77,
                                   {[&](std::string_view piece) { reply.text += piece; },
                                    [&](const auto& error) {
                                        reply.isEnded = true;
                                        reply.error = error;
                                    }});
        EXPECT_FALSE(reply.isEnded) << "called before the stream was handed out";
        EXPECT_TRUE(turnUntil([&] { return reply.isEnded; }));
        return reply;
    }
    json sent() const { return json::parse(server.body()); }

    AITestSettings settings;
    HttpClient http{HttpClient::Limits{5s}};
    ScriptedServer server;
    const std::vector<AIMessage> conversation{
        message(Role::system, "left out"), message(Role::user, "Zażółć\n\"x\""),
        message(Role::assistant, "Yes"), message(Role::user, "Go on")};
};

TEST_F(ProviderTest, ClaudeIsAskedAsItExpects) {
    ask(ClaudeProvider(connection(), "key", "model-1"), conversation);
    EXPECT_THAT(server.requests().at(0), StartsWith("POST /v1/messages HTTP/1.1\r\n"));
    EXPECT_THAT(server.requests().at(0), HasSubstr("\r\nx-api-key: key\r\n"));
    EXPECT_THAT(server.requests().at(0), HasSubstr("\r\nanthropic-version: 2023-06-01\r\n"));
    EXPECT_EQ(sent(), json::parse(R"({"model":"model-1","max_tokens":77,"system":"Be kind.",
        "messages":[{"role":"user","content":"Zażółć\n\"x\""},{"role":"assistant","content":"Yes"},
        {"role":"user","content":"Go on"}],"stream":true})"));
    ask(ClaudeProvider(connection(), "key", "model-1"), {message(Role::system, "only")});
    EXPECT_EQ(sent()["messages"], json::array());
}

TEST_F(ProviderTest, OpenAIIsAskedAsItExpects) {
    ask(OpenAIProvider(connection(), " key ", "model-1"), conversation);
    EXPECT_THAT(server.requests().at(0), StartsWith("POST /v1/chat/completions HTTP/1.1\r\n"));
    EXPECT_THAT(server.requests().at(0), HasSubstr("\r\nAuthorization: Bearer  key \r\n"));
    EXPECT_EQ(sent(), json::parse(R"({"model":"model-1","max_tokens":77,
        "messages":[{"role":"system","content":"Be kind."},
        {"role":"user","content":"Zażółć\n\"x\""},{"role":"assistant","content":"Yes"},
        {"role":"user","content":"Go on"}],"stream":true})"));
    ask(OpenAIProvider(connection(), "key", "model-1"), {});
    EXPECT_EQ(sent()["messages"].size(), 1U);
}

TEST_F(ProviderTest, GeminiIsAskedInTurns) {
    const GeminiProvider provider(connection(), "Key-1_x", "gemini-2.0-flash");
    ask(provider,
        {message(Role::assistant, "A"), message(Role::assistant, ""), message(Role::system, "S"),
         message(Role::assistant, "B"), message(Role::user, "C")});
    EXPECT_THAT(server.requests().at(0),
                StartsWith("POST /v1beta/models/gemini-2.0-flash:streamGenerateContent?alt=sse&key="
                           "Key-1_x HTTP/1.1\r\n"));
    EXPECT_THAT(server.requests().at(0), Not(HasSubstr("Authorization")));
    EXPECT_EQ(sent(), json::parse(R"({"contents":[{"role":"user","parts":[{"text":" "}]},
        {"role":"model","parts":[{"text":"A"},{"text":"B"}]},
        {"role":"user","parts":[{"text":"C"}]}],
        "systemInstruction":{"parts":[{"text":"Be kind."}]},
        "generationConfig":{"maxOutputTokens":77}})"));

    const auto reply = ask(provider, {message(Role::user, ""), message(Role::system, "S")});
    EXPECT_EQ(reply.error.value().kind(), AIError::Kind::invalidResponse);
    EXPECT_EQ(server.requests().size(), 1U);

    ask(GeminiProvider(connection(), "a&key=b #ż", "../x?y"), {message(Role::user, "C")});
    EXPECT_THAT(server.requests().back(),
                StartsWith("POST /v1beta/models/..%2Fx%3Fy:streamGenerateContent?alt=sse&key="
                           "a%26key%3Db%20%23%C5%BC HTTP/1.1\r\n"));
}

TEST_F(ProviderTest, SendsNothingWithoutASafeAddress) {
    const auto reply =
        ask(ClaudeProvider({http, std::nullopt}, "key", "model"), {message(Role::user, "Hi")});
    EXPECT_EQ(reply.error.value().transport().value().kind, HttpError::Kind::badRequest);
    EXPECT_THAT(reply.error->description(settings.texts), HasSubstr("https"));
}

TEST_F(ProviderTest, AReplyThatBreaksOffEndsWithTheReason) {
    server.answer({ScriptedServer::chunkedHead() + "fff\r\n" +
                   "data: {\"choices\":[{\"delta\":{\"content\":\"Half\"}}]}\ndata: {\"cho"});
    const auto reply = ask(OpenAIProvider(connection(), "key", "m"), {message(Role::user, "Hi")});
    EXPECT_EQ(reply.text, "Half");
    EXPECT_EQ(reply.error.value().kind(), AIError::Kind::transport);
    EXPECT_THAT(reply.error->description(settings.texts), HasSubstr("cannot be reached"));
}

// However long it takes in all: only silence ends a reply.
TEST_F(ProviderTest, AReplyThatTricklesArrivesWhole) {
    const HttpClient impatient(HttpClient::Limits{1s});
    const ClaudeProvider provider({impatient, server.url()}, "key", "m");
    const std::string head = "HTTP/1.1 200 OK\r\n\r\n";
    const auto event = [](const std::string& text) {
        return "data: {\"type\":\"content_block_delta\",\"delta\":{\"text\":\"" + text + "\"}}\n";
    };
    const std::string slow = event("one") + event("two");
    server.answer({slow, 1, 1, head, true, 12ms});
    const auto start = std::chrono::steady_clock::now();
    const auto reply = ask(provider, {message(Role::user, "Hi")});
    EXPECT_EQ(reply.text, "onetwo");
    EXPECT_FALSE(reply.error);
    EXPECT_GT(std::chrono::steady_clock::now() - start, 1s) << "longer than the longest silence";

    server.answer({event(std::string(200, 'x')), 256, 50, head, true, 20ms});
    EXPECT_EQ(ask(provider, {message(Role::user, "Hi")}).text.size(), 10'000U) << "10 KB a second";
}

TEST_F(ProviderTest, AStreamThatIsLetGoStopsTheServer) {
    server.answer({"data: {\"choices\":[{\"delta\":{\"content\":\"x\"}}]}\n", 65536, 100'000'000,
                   "HTTP/1.1 200 OK\r\n\r\n"});
    int pieces = 0;
    std::unique_ptr<TextStream> stream;
    stream = OpenAIProvider(connection(), "key", "m")
                 .streamMessage({}, "", 1,
                                {[&](std::string_view) {
                                     if (++pieces == 3) stream.reset();
                                 },
                                 [](const auto&) { FAIL() << "called after the end"; }});
    EXPECT_TRUE(turnUntil([&] { return server.leftConnections() == 1; }));
    EXPECT_EQ(pieces, 3);
}

// Some services repeat what they were sent.
TEST_F(ProviderTest, AnErrorNeverRepeatsTheKey) {
    const std::string key = "secret key/1";
    const auto escaped = "secret%20key%2F1";
    const auto textOf = [&](const AIProviderService& provider) {
        return ask(provider, {message(Role::user, "Hi")}).error.value().description(settings.texts);
    };
    server.answer(401, json{{"error", {{"message", "Wrong: " + key + "!"}}}}.dump());
    EXPECT_EQ(textOf(ClaudeProvider(connection(), key, "m")), "HTTP 401: Wrong: …!");
    server.answer(404, "No page at /v1beta?key=" + std::string(escaped));
    EXPECT_EQ(textOf(GeminiProvider(connection(), key, "m")), "HTTP 404: No page at /v1beta?key=…");
}

// A key pasted with its line end must not be cut, nor begin a header of its own.
TEST_F(ProviderTest, AKeyWithALineEndIsNotSent) {
    const auto reply =
        ask(ClaudeProvider(connection(), "key\nX-Other: 1", "m"), {message(Role::user, "Hi")});
    EXPECT_EQ(reply.error.value().transport().value().kind, HttpError::Kind::badRequest);
    EXPECT_THAT(server.requests(), IsEmpty());
}

}  // namespace
}  // namespace corvel
