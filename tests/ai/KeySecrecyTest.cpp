#include "ai/AIAssistantViewModel.h"
#include "ai/AIServices.h"
#include "ai/AITestSettings.h"
#include "support/FileContent.h"
#include "support/Keyring.h"
#include "support/MainLoop.h"
#include "support/ScriptedServer.h"
#include "support/SessionBus.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace corvel {
namespace {

namespace fs = std::filesystem;
using Property = AIAssistantViewModel::Property;

constexpr const char* kMarker = "MARKER-of-the-key-42";

/// Files in `folder` that hold the key, but for the keyring's own.
std::vector<std::string> filesWithKey(const fs::path& folder) {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.path().string().find("/keyrings/") != std::string::npos) continue;
        if (!entry.is_regular_file()) continue;
        if (contentOf(entry.path()).find(kMarker) != std::string::npos) {
            found.push_back(entry.path());
        }
    }
    return found;
}

// The whole way a key goes: saved, read, sent, refused, refused with its echo, unreachable.
TEST(KeySecrecy, TheKeyIsInTheKeyringAndInTheRequestAndNowhereElse) {
    setenv("G_MESSAGES_DEBUG", "all", 1);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    std::string shown;
    {
        const SessionBus bus;
        const Keyring keyring;
        AITestSettings settings;
        AIServices services(settings.preferences);
        AIAssistantViewModel model(services.factory, settings.preferences, settings.texts);
        for (const auto type : kAIProviderTypes) {
            ScriptedServer server;
            settings.defaults.setString(std::string("aiEndpoint_") + rawValue(type), server.url());
            model.setSelectedProviderType(type);
            bool isSaved = false;
            services.keychain.saveKey(kMarker, type, [&](const auto& error) {
                EXPECT_FALSE(error);
                isSaved = true;
            });
            EXPECT_TRUE(turnUntil([&] { return isSaved; }));

            const auto failWith = [&](const std::function<void()>& prepare) {
                prepare();
                bool isOver = false;
                const ScopedConnection ends = model.signalChanged().connect([&](auto property) {
                    isOver = isOver || (property == Property::error && model.error());
                });
                model.setInputText("Hello");
                model.sendChatMessage();
                EXPECT_TRUE(turnUntil([&] { return isOver; }));
                shown += model.error().value_or("");
            };
            failWith([&] { server.answer(401, "<html>no</html>"); });
            EXPECT_NE(server.requests().back().find(kMarker), std::string::npos);
            failWith([&] { server.answer(400, std::string("bad key: ") + kMarker); });
            failWith([&] { server.answer({"no HTTP\r\n\r\n"}); });
            failWith([&] { server.answer(307, "", "Location: http://127.0.0.1:1/\r\n"); });
            failWith([&] {
                settings.defaults.setString(std::string("aiEndpoint_") + rawValue(type),
                                            "http://127.0.0.1:1");
            });
        }
        EXPECT_EQ(filesWithKey(settings.folder.path()), std::vector<std::string>());
    }
    const auto written =
        testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr() + shown;
    EXPECT_EQ(written.find(kMarker), std::string::npos) << written;
    EXPECT_EQ(filesWithKey(fs::path(std::getenv("HOME")).parent_path()),
              std::vector<std::string>());
    EXPECT_EQ(contentOf("/proc/self/cmdline").find(kMarker), std::string::npos);
    EXPECT_NE(shown.find("HTTP 401"), std::string::npos);
}

}  // namespace
}  // namespace corvel
