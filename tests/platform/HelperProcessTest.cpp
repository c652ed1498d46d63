#include "platform/HelperProcess.h"
#include "support/MainLoop.h"

#include <gtest/gtest.h>

namespace corvel {
namespace {

using std::chrono::milliseconds;

HelperOutcome outcomeOf(HelperProcess process,
                        const std::string& input = {},
                        HelperProcess::Limit limit = {},
                        const Glib::RefPtr<Gio::Cancellable>& cancellable = {}) {
    std::optional<HelperOutcome> outcome;
    process.work(
        input, cancellable,
        [&](HelperOutcome answer) {
            EXPECT_FALSE(outcome) << "answered twice";
            outcome = std::move(answer);
        },
        limit);
    EXPECT_FALSE(outcome) << "answered before the call returned";
    EXPECT_TRUE(turnUntil([&] { return outcome.has_value(); }));
    return outcome.value_or(HelperOutcome{});
}

HelperProcess shell(const std::string& script) {
    return HelperProcess({"/bin/sh", "-c", script});
}

TEST(HelperProcess, TakesItsInputAndGivesItsOutputWhole) {
    std::string input(3'000'000, '\0');
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<char>(i % 251);
    const auto outcome = outcomeOf(HelperProcess({"/bin/cat"}), input);
    EXPECT_TRUE(outcome.isGood);
    EXPECT_TRUE(outcome.output == input);
}

TEST(HelperProcess, TellsWhatAFailedOneSaid) {
    const auto failed = outcomeOf(shell("echo because; exit 3"));
    EXPECT_FALSE(failed.isGood);
    EXPECT_EQ(failed.output, "because\n");
    EXPECT_FALSE(outcomeOf(HelperProcess({"/nowhere/helper"})).isGood);
    outcomeOf(shell("exec true"), std::string(1'000'000, 'x'));  // and this program is still there
}

TEST(HelperProcess, IsEndedAtItsLimitAndWhenCancelled) {
    EXPECT_FALSE(outcomeOf(shell("exec sleep 1000"), {}, milliseconds(20)).isGood);
    const auto cancellable = Gio::Cancellable::create();
    Glib::signal_idle().connect_once([&] { cancellable->cancel(); });
    EXPECT_FALSE(outcomeOf(shell("exec sleep 1000"), {}, {}, cancellable).isGood);
}

}  // namespace
}  // namespace corvel
