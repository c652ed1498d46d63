#include "app/UpdateCheck.h"
#include "platform/Version.h"
#include "support/FakePackageKit.h"
#include "support/MainLoop.h"
#include "support/SessionBus.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace corvel {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using State = UpdateCheck::State;

class UpdateCheckTest : public testing::Test {
protected:
    UpdateCheckTest() {
        preferences.setAppLanguage("en");
        // The test program is of no package, and in no sandbox.
        places.flatpakInfo = folder.path() / "none";
    }
    State check(std::chrono::milliseconds silence = 20s) {
        UpdateCheck one(places, silence);
        EXPECT_EQ(one.heading(texts), "Checking for Updates…");
        EXPECT_TRUE(turnUntil([&] { return one.state() != State::checking; }));
        body = one.body(texts);
        return one.state();
    }

    SessionBus bus;
    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
    InstallOriginQuery::Places places;
    std::string body;
};

TEST_F(UpdateCheckTest, TellsOfAVersionThatTheSystemOffers) {
    FakePackageKit service;
    EXPECT_EQ(check(), State::upToDate);
    EXPECT_THAT(service.asked, ElementsAre("Resolve qno-corvel", "GetUpdates"));
    // Which one is newer is for the service to say.
    service.updates.packages = {"other;7.0;amd64;debian", "qno-corvel-doc;8.0;all;debian"};
    EXPECT_EQ(check(), State::upToDate);
}

TEST_F(UpdateCheckTest, NamesTheOfferedVersion) {
    FakePackageKit service;
    service.updates.packages = {"other;7.0;amd64;debian", "qno-corvel;0.9~rc1;amd64;debian"};
    EXPECT_EQ(check(), State::newer);
    EXPECT_THAT(
        body, HasSubstr(std::string("offers version 0.9~rc1; you are using version ") + version()));
}

TEST_F(UpdateCheckTest, SaysHowItWasInstalledWhereTheSystemDoesNotKnow) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    EXPECT_EQ(check(), State::unmanaged) << "no bus";
    EXPECT_THAT(body, HasSubstr("built from source"));
    setenv("DBUS_SYSTEM_BUS_ADDRESS", std::getenv("DBUS_SESSION_BUS_ADDRESS"), 1);
    EXPECT_EQ(check(), State::unmanaged) << "nobody on it";

    FakePackageKit service;
    service.installed.packages.clear();
    EXPECT_EQ(check(), State::unmanaged) << "another copy of the program";
    EXPECT_THAT(service.asked, ElementsAre("Resolve qno-corvel"));
}

TEST_F(UpdateCheckTest, KnowsPackagesAndSandboxes) {
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
    places.packageTool = folder.write("tool", "#!/bin/sh\necho \"corvel-notes:amd64: $2\"\n");
    std::filesystem::permissions(places.packageTool, std::filesystem::perms::owner_all);
    check();
    EXPECT_THAT(body, HasSubstr("from the package corvel-notes."));
    places.packageTool = "no-such-tool";
    check();
    EXPECT_THAT(body, HasSubstr("built from source"));
    places.flatpakInfo = folder.write("flatpak", "");
    check();
    EXPECT_THAT(body, HasSubstr("flatpak update"));
}

TEST_F(UpdateCheckTest, SaysWhyTheSystemDidNotAnswer) {
    FakePackageKit service;
    service.updates.error = "the lists are locked";
    service.updates.exit = 2;
    EXPECT_EQ(check(), State::failed);
    EXPECT_THAT(body, HasSubstr("for updates: the lists are locked\n\nYou are using"));
}

TEST_F(UpdateCheckTest, SurvivesAServiceThatRefuses) {
    FakePackageKit service;
    service.installed.isRefused = true;
    EXPECT_EQ(check(), State::failed);
    EXPECT_THAT(body, HasSubstr("for updates: not for you"));
}

TEST_F(UpdateCheckTest, SurvivesAServiceThatFallsSilentOrVanishes) {
    FakePackageKit service;
    service.installed.isSilent = true;
    EXPECT_EQ(check(100ms), State::failed);
    EXPECT_THAT(body, StartsWith("The system did not answer the question for updates.\n"));

    UpdateCheck left(places);
    EXPECT_TRUE(turnUntil([&] { return service.asked.size() == 2; }));
    service.vanish();
    EXPECT_TRUE(turnUntil([&] { return left.state() == State::failed; }));
    { const UpdateCheck dropped(places); }
}

}  // namespace
}  // namespace corvel
