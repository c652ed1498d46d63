#include "platform/HelperProcess.h"
#include "support/MainLoop.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

using std::chrono::milliseconds;

HelperOutcome outcomeOf(HelperTask task, const Glib::RefPtr<Gio::Cancellable>& cancellable = {}) {
    std::optional<HelperOutcome> outcome;
    runHelper(std::move(task), cancellable, [&](HelperOutcome answer) {
        EXPECT_FALSE(outcome) << "answered twice";
        outcome = std::move(answer);
    });
    EXPECT_FALSE(outcome) << "answered before the call returned";
    EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }));
    return outcome.value_or(HelperOutcome{});
}

HelperTask shell(const std::string& script) {
    return {{"/bin/sh", "-c", script}, {}, {}};
}

TEST(HelperProcess, TakesItsInputAndGivesItsOutputWhole) {
    std::string input(3'000'000, '\0');
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<char>(i % 251);
    const auto outcome = outcomeOf({{"/bin/cat"}, input, {}});
    EXPECT_TRUE(outcome.isGood);
    EXPECT_TRUE(outcome.output == input);
}

TEST(HelperProcess, TellsWhatAFailedOneSaid) {
    const auto failed = outcomeOf(shell("echo because; exit 3"));
    EXPECT_FALSE(failed.isGood);
    EXPECT_EQ(failed.output, "because\n");
    EXPECT_FALSE(outcomeOf({{"/nowhere/helper"}, {}, {}}).isGood);
    HelperTask deaf = shell("exec true");
    deaf.input.assign(1'000'000, 'x');
    outcomeOf(std::move(deaf));  // and this program is still there
}

TEST(HelperProcess, IsEndedAtItsLimitAndWhenCancelled) {
    HelperTask endless = shell("exec sleep 1000");
    endless.limit = milliseconds(20);
    EXPECT_FALSE(outcomeOf(endless).isGood);
    endless.limit.reset();
    const auto cancellable = Gio::Cancellable::create();
    Glib::signal_idle().connect_once([&] { cancellable->cancel(); });
    EXPECT_FALSE(outcomeOf(endless, cancellable).isGood);
}

}  // namespace
}  // namespace corvel
