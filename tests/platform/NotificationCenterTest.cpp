#include "platform/NotificationCenter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace corvel {
namespace {

using testing::ElementsAre;

class NotificationCenterTest : public testing::Test {
protected:
    NotificationCenter::Observer note(const std::string& name) {
        return [this, name](const std::any&) { called.push_back(name); };
    }

    NotificationCenter center;
    std::vector<std::string> called;
};

TEST_F(NotificationCenterTest, CallsTheObserversOfANameInOrderUntilTheirConnectionsEnd) {
    const auto first = center.observe("saved", note("first"));
    {
        const auto second = center.observe("saved", note("second"));
        const auto other = center.observe("opened", note("other"));
        center.post("saved");
        EXPECT_THAT(called, ElementsAre("first", "second"));
    }
    center.post("saved");
    center.post("nobody observes this");
    EXPECT_THAT(called, ElementsAre("first", "second", "first"));
}

TEST_F(NotificationCenterTest, AnObserverThatIsRemovedWhilePostingIsNotCalledAnymore) {
    std::optional<ScopedConnection> removed;
    std::optional<ScopedConnection> itself;
    const auto first = center.observe("saved", [&](const std::any&) { removed.reset(); });
    itself = center.observe("saved", [&](const std::any&) {
        called.emplace_back("itself");
        itself.reset();
    });
    removed = center.observe("saved", note("removed"));
    const auto last = center.observe("saved", note("last"));
    center.post("saved");
    EXPECT_THAT(called, ElementsAre("itself", "last"));
    center.post("saved");
    EXPECT_THAT(called, ElementsAre("itself", "last", "last"));
}

TEST_F(NotificationCenterTest, PostingFromAnObserverReachesAllBeforeTheOuterPostReturns) {
    const auto outer = center.observe("outer", [&](const std::any&) { center.post("inner"); });
    const auto inner = center.observe("inner", note("inner"));
    const auto after = center.observe("outer", note("after"));
    center.post("outer");
    EXPECT_THAT(called, ElementsAre("inner", "after"));
}

}  // namespace
}  // namespace corvel
