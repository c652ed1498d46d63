#include "ai/AIServices.h"
#include "ai/ApiKey.h"
#include "app/ProviderKeyViewModel.h"
#include "support/Keyring.h"
#include "support/MainLoop.h"
#include "support/ScriptedServer.h"
#include "support/SessionBus.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace corvel {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using Work = ProviderKeyViewModel::Work;

TEST(ApiKey, IsTakenOutOfWhatWasPastedAroundIt) {
    EXPECT_EQ(trimmedApiKey(" \r\n\tsk-Key_1.~ \n"), "sk-Key_1.~");
    EXPECT_EQ(trimmedApiKey("\uFEFF\u00A0key\u200B\u2028"), "key");
    EXPECT_EQ(trimmedApiKey("\u00A0 \n"), "");
    EXPECT_EQ(faultOf("sk-Key_1.~"), std::nullopt);
    EXPECT_EQ(faultOf(""), ApiKeyFault::empty);
    for (const char* broken : {"one two", "one\ntwo", "one\u00A0two", "one\u200Btwo"}) {
        EXPECT_EQ(faultOf(broken), ApiKeyFault::innerSpace) << broken;
    }
    for (const char* odd : {"zażółć", "key…", "a\x7F", "a\x01", "\xFF"}) {
        EXPECT_EQ(faultOf(odd), ApiKeyFault::unusualCharacters) << odd;
    }
}

/// A provider's key with a real keyring, if there is one, and a server that answers for it.
class ProviderKeyTest : public testing::Test {
protected:
    ProviderKeyTest() {
        preferences.setAppLanguage("en");
        defaults.setString("aiEndpoint_claude", server.url());
        model.signalSaved().connect([this] { ++saved; });
        model.refresh();
        EXPECT_TRUE(turnUntil([this] { return model.keyState().has_value(); }));
    }
    void finish() {
        EXPECT_TRUE(turnUntil([this] { return model.work() == Work::none; }));
    }
    bool turnsTo(KeyState state) {
        return turnUntil([&] { return model.keyState() == state; });
    }
    std::string detail() const { return model.detail(texts); }
    void answerWith(const std::string& text) {
        server.answer(200,
                      R"(data: {"type":"content_block_delta","delta":{"text":")" + text + "\"}}\n");
    }

    SessionBus bus;
    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    ScriptedServer server;
    std::unique_ptr<Keyring> keyring;
    AIServices services{preferences};
    ProviderKeyViewModel model{services.factory, services.keychain, AIProviderType::claude};
    int saved = 0;
};

class ProviderKeyInKeyringTest : public ProviderKeyTest {
protected:
    ProviderKeyInKeyringTest() {
        keyring = std::make_unique<Keyring>();
        model.refresh();
        EXPECT_TRUE(turnsTo(KeyState::notStored));
    }
    void save(const std::string& text) {
        model.save(text);
        finish();
        EXPECT_TRUE(turnsTo(KeyState::stored));
    }
};

TEST_F(ProviderKeyInKeyringTest, IsSavedTriedAndDeleted) {
    answerWith("OK");
    save(" sk-1\n");
    EXPECT_EQ(saved, 1);
    EXPECT_EQ(model.status(texts), "The key is stored");
    EXPECT_EQ(detail(), "Saved.");
    model.test("");
    EXPECT_EQ(model.status(texts), "Waiting for the service to answer…");
    finish();
    EXPECT_EQ(detail(), "The service answered: “OK”");
    EXPECT_FALSE(model.isBad());
    EXPECT_THAT(server.requests().back(), HasSubstr("x-api-key: sk-1\r\n"));
    preferences.setAppLanguage("pl");
    EXPECT_EQ(detail(), "Usługa odpowiedziała: „OK”");
    preferences.setAppLanguage("en");

    model.test(" entered ");
    finish();
    EXPECT_THAT(server.requests().back(), HasSubstr("x-api-key: entered\r\n"));
    model.remove();
    finish();
    EXPECT_EQ(model.keyState(), KeyState::notStored);
    EXPECT_EQ(detail(), "Deleted.");
    model.test("");
    EXPECT_EQ(detail(), "Type or paste the key.");
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(ProviderKeyInKeyringTest, ALockedKeyringKeepsWhatItHasAndSaysSo) {
    save("sk-1");
    keyring->lock();
    model.save("sk-2");
    finish();
    EXPECT_THAT(detail(), StartsWith("The password store is locked"));
    EXPECT_EQ(saved, 1) << "the new key stays in the field";
    model.remove();
    finish();
    EXPECT_EQ(model.keyState(), KeyState::stored);
    EXPECT_THAT(detail(), StartsWith("The key could not be deleted"));
    model.test("");
    finish();
    EXPECT_THAT(detail(), StartsWith("The key could not be read"));
    EXPECT_TRUE(model.isBad());
    keyring->stop();
    model.save("sk-2");
    finish();
    EXPECT_THAT(detail(), StartsWith("No password store"));
    EXPECT_TRUE(turnsTo(KeyState::noStore));
}

TEST_F(ProviderKeyTest, WithoutAKeyringAKeyCanBeTriedButNotSaved) {
    EXPECT_EQ(model.keyState(), KeyState::noStore);
    EXPECT_TRUE(model.isBad());
    EXPECT_THAT(detail(), HasSubstr("gnome-keyring"));
    model.save("sk-1");
    finish();
    EXPECT_THAT(detail(), HasSubstr("Failed to save to Keychain (status: -"));
    EXPECT_EQ(saved, 0);
    model.save("sk 1");
    EXPECT_THAT(detail(), StartsWith("The key has a space"));
    model.test("zażółć");
    EXPECT_THAT(detail(), StartsWith("The key has characters that cannot be sent"));
    EXPECT_THAT(server.requests(), testing::IsEmpty());
}

TEST_F(ProviderKeyTest, SaysWhatCameOfTheRequest) {
    const auto detailAfter = [this] {
        model.test("sk-1");
        finish();
        EXPECT_TRUE(model.isBad());
        return detail();
    };
    server.answer(401, R"({"error":{"message":"invalid x-api-key"}})");
    EXPECT_EQ(detailAfter(), "The service did not accept the key. HTTP 401: invalid x-api-key");
    server.answer(429, "");
    EXPECT_THAT(detailAfter(), testing::EndsWith("Try again later. HTTP 429"));
    server.answer(503, "<html>");
    EXPECT_THAT(detailAfter(), testing::EndsWith("Try later. HTTP 503"));
    server.answer(404, R"({"error":{"message":"model: nonesuch"}})");
    EXPECT_EQ(detailAfter(), "HTTP 404: model: nonesuch");
    server.answer(200, "<html>\n");
    EXPECT_EQ(detailAfter(), "The service took the request but answered without any text.");
    defaults.setString("aiEndpoint_claude", "http://127.0.0.1:1");
    EXPECT_THAT(detailAfter(), StartsWith("The service cannot be reached"));

    defaults.setString("aiEndpoint_claude", server.url());
    answerWith(std::string(50'000, 'x') + "\\n");
    model.test("sk-1");
    finish();
    EXPECT_LT(detail().size(), 200U);
    EXPECT_FALSE(model.isBad());
}

TEST_F(ProviderKeyTest, AStoppedTestIsOver) {
    server.answer({"", 65536, 1, "", false});
    model.test("sk-1");
    EXPECT_TRUE(turnUntil([this] { return !server.requests().empty(); }));
    model.cancelTest();
    EXPECT_EQ(model.work(), Work::none);
    EXPECT_TRUE(turnUntil([this] { return server.leftConnections() == 1; }));
    EXPECT_FALSE(model.news());
}

}  // namespace
}  // namespace corvel
