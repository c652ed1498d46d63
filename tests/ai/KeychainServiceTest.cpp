#include "ai/KeychainService.h"
#include "support/Keyring.h"
#include "support/MainLoop.h"
#include "support/RefusingKeyring.h"
#include "support/SessionBus.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace corvel {
namespace {

/// The service on a bus of its own, with its answers waited for.
class KeychainServiceTest : public testing::Test {
protected:
    std::optional<std::string> key(AIProviderType type) {
        std::optional<std::optional<std::string>> answer;
        keychain.readKey(type, [&](auto found) { answer = found; });
        EXPECT_FALSE(answer);
        EXPECT_TRUE(turnUntil([&] { return answer.has_value(); }));
        return answer.value_or(std::nullopt);
    }
    KeyState state(AIProviderType type) {
        std::optional<KeyState> answer;
        keychain.findKey(type, [&](KeyState found) { answer = found; });
        EXPECT_TRUE(turnUntil([&] { return answer.has_value(); }));
        return answer.value_or(KeyState::noStore);
    }
    std::optional<KeychainError> save(const std::string& text, AIProviderType type) {
        std::optional<std::optional<KeychainError>> answer;
        keychain.saveKey(text, type, [&](auto error) { answer = error; });
        EXPECT_TRUE(turnUntil([&] { return answer.has_value(); }));
        return answer.value_or(std::nullopt);
    }
    void remove(AIProviderType type) {
        bool isDone = false;
        keychain.deleteKey(type, [&] { isDone = true; });
        EXPECT_TRUE(turnUntil([&] { return isDone; }));
    }

    SessionBus bus;
    SecretStore secrets;
    KeychainService keychain{secrets};
};

/// What another program sees of the items, by the command of libsecret.
std::string itemsSeenFromOutside() {
    const GObjectHandle<GSubprocess> program(g_subprocess_new(
        static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                      G_SUBPROCESS_FLAGS_STDERR_MERGE),
        nullptr, "secret-tool", "search", "--all", "service", "com.qno.corvel.ai", nullptr));
    char* text = nullptr;
    g_subprocess_communicate_utf8(program.get(), nullptr, nullptr, &text, nullptr, nullptr);
    const Handle<char, g_free> owner(text);
    return text == nullptr ? "" : text;
}

std::size_t countOf(const std::string& part, const std::string& text) {
    std::size_t count = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(KeychainServiceTest, KeepsOneKeyForEachServiceInARealKeyring) {
    Keyring keyring;
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    EXPECT_EQ(state(AIProviderType::claude), KeyState::notStored);
    remove(AIProviderType::claude);

    EXPECT_FALSE(save("first", AIProviderType::claude));
    EXPECT_FALSE(save(" zażółć\n", AIProviderType::claude));
    EXPECT_FALSE(save("", AIProviderType::gemini));
    EXPECT_EQ(key(AIProviderType::claude), " zażółć\n");
    EXPECT_EQ(state(AIProviderType::claude), KeyState::stored);
    EXPECT_EQ(key(AIProviderType::gemini), "");
    EXPECT_EQ(key(AIProviderType::openai), std::nullopt);
    const auto seen = itemsSeenFromOutside();
    EXPECT_EQ(countOf("attribute.account = claude", seen), 1U) << seen;
    EXPECT_EQ(countOf("attribute.account = gemini", seen), 1U) << seen;

    remove(AIProviderType::claude);
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    EXPECT_FALSE(save("\xFF\xFE", AIProviderType::openai));
    EXPECT_EQ(key(AIProviderType::openai), std::nullopt) << "no UTF-8";

    keyring.stop();
    EXPECT_EQ(key(AIProviderType::gemini), std::nullopt);
    ASSERT_TRUE(save("again", AIProviderType::gemini));
}

TEST_F(KeychainServiceTest, ALockedKeyringThatStaysLockedLosesNothing) {
    Keyring keyring;
    EXPECT_FALSE(save("first", AIProviderType::claude));
    keyring.lock();
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    EXPECT_EQ(state(AIProviderType::claude), KeyState::stored) << "known without opening it";
    remove(AIProviderType::claude);
    const auto error = save("second", AIProviderType::claude);
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->isLocked()) << error->status;
    EXPECT_FALSE(error->isServiceMissing());
    EXPECT_EQ(state(AIProviderType::claude), KeyState::stored);
}

TEST_F(KeychainServiceTest, AUserWhoRefusesToOpenTheKeyringIsAskedOnceAndLosesNothing) {
    const RefusingKeyring keyring;
    EXPECT_EQ(state(AIProviderType::claude), KeyState::stored);
    EXPECT_EQ(keyring.refusals(), 0) << "known without opening it";
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    EXPECT_EQ(keyring.refusals(), 1);
    const auto error = save("second", AIProviderType::claude);
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->isLocked()) << error->status;
    EXPECT_FALSE(error->isServiceMissing());
    EXPECT_EQ(keyring.refusals(), 2);
    remove(AIProviderType::claude);
    EXPECT_EQ(state(AIProviderType::claude), KeyState::stored);
}

TEST_F(KeychainServiceTest, AKeyringThatIsStartedAnewIsUsedAgain) {
    {
        const Keyring keyring;
        EXPECT_FALSE(save("first", AIProviderType::claude));
    }
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    const Keyring another;
    EXPECT_FALSE(save("second", AIProviderType::claude));
    EXPECT_EQ(key(AIProviderType::claude), "second");
}

TEST_F(KeychainServiceTest, WithoutAPasswordStoreThereIsNoKeyAndSavingSaysSo) {
    EXPECT_EQ(key(AIProviderType::claude), std::nullopt);
    EXPECT_EQ(state(AIProviderType::claude), KeyState::noStore);
    remove(AIProviderType::claude);
    const auto error = save("marker", AIProviderType::claude);
    ASSERT_TRUE(error);
    EXPECT_TRUE(error->isServiceMissing()) << error->status;
    EXPECT_EQ(error->description(),
              "Failed to save to Keychain (status: " + std::to_string(error->status) + ")");
    EXPECT_LT(error->status, 0);
}

TEST(SecretStore, CallsNobodyOnceItIsGone) {
    const SessionBus bus;
    {
        SecretStore secrets;
        secrets.lookUp({"service", "account"}, [](const auto&) { FAIL(); });
        secrets.add({"service", "account"}, "label", "x", [](auto) { FAIL(); });
    }
    SecretStore other;
    bool isDone = false;
    other.lookUp({"service", "account"}, [&](const auto&) { isDone = true; });
    EXPECT_TRUE(turnUntil([&] { return isDone; }));
}

TEST(SecretStore, WithoutABusThereIsNoPasswordStore) {
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    SecretStore secrets;
    std::optional<SecretStore::Status> status;
    secrets.add({"service", "account"}, "label", "x", [&](auto answer) { status = answer; });
    EXPECT_TRUE(turnUntil([&] { return status.has_value(); }));
    EXPECT_TRUE(SecretStore::isServiceMissing(status.value())) << *status;
}

}  // namespace
}  // namespace corvel
