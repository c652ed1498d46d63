#include "markdown/GuardedRenderer.h"
#include "markdown/MarkdownParserService.h"
#include "markdown/MarkdownRisk.h"

#include <giomm/cancellable.h>
#include <glibmm/main.h>
#include <gtest/gtest.h>

#include <chrono>

namespace corvel {
namespace {

using Clock = std::chrono::steady_clock;

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

RenderOutcome rendered(const GuardedRenderer& renderer,
                       const std::string& markdown,
                       const Glib::RefPtr<Gio::Cancellable>& cancellable = {}) {
    const auto loop = Glib::MainLoop::create();
    RenderOutcome outcome;
    int answers = 0;
    renderer.render(markdown, cancellable, [&](RenderOutcome answer) {
        outcome = std::move(answer);
        ++answers;
        loop->quit();
    });
    EXPECT_EQ(answers, 0) << "answered before the call returned";
    loop->run();
    while (loop->get_context()->iteration(false)) {
    }
    EXPECT_EQ(answers, 1);
    return outcome;
}

GuardedRenderer withHelper() {
    return GuardedRenderer();
}

std::string wideTable() {
    return repeated("|a", 7000) + "\n" + repeated("|-", 7000) + "\n" + repeated("|\n", 7000);
}

std::string tooMuch() {
    return repeated("![[]()", 60'000);
}

TEST(GuardedRenderer, OrdinaryTextNeedsNoHelper) {
    const auto outcome = rendered(GuardedRenderer("/nowhere"), "*a*");
    EXPECT_EQ(outcome.html, "<p><em>a</em></p>\n");
    EXPECT_FALSE(outcome.isPlainText);
}

TEST(GuardedRenderer, RiskyAndLargeTextComesWholeFromTheHelper) {
    for (const std::string& text :
         {repeated("a <?", 4000), repeated("zażółć *gęślą*\n\n", 90'000)}) {
        ASSERT_NE(riskOf(text), MarkdownRisk::ordinary);
        const auto outcome = rendered(withHelper(), text);
        EXPECT_FALSE(outcome.isPlainText);
        EXPECT_TRUE(outcome.html == MarkdownParserService::renderBody(text));
    }
}

TEST(GuardedRenderer, TextTooMuchForTheParserIsShownPlain) {
    const std::string text = tooMuch() + "<&";
    const auto outcome = rendered(withHelper(), text);
    EXPECT_TRUE(outcome.isPlainText);
    EXPECT_TRUE(outcome.html == "<pre>" + MarkdownParserService::escaped(text) + "</pre>");
}

TEST(GuardedRenderer, AHelperThatCannotStartOrFailsGivesPlainText) {
    for (const char* executable : {"/nowhere", "/bin/false", "/bin/true"}) {
        const auto outcome = rendered(GuardedRenderer(executable), tooMuch());
        EXPECT_TRUE(outcome.isPlainText) << executable;
    }
}

TEST(GuardedRenderer, CancellingAnswersAtOnceAndOnce) {
    const auto cancellable = Gio::Cancellable::create();
    Glib::signal_timeout().connect_once([&] { cancellable->cancel(); }, 50);
    const auto start = Clock::now();
    rendered(withHelper(), tooMuch(), cancellable);
    EXPECT_LT(Clock::now() - start, std::chrono::milliseconds(1500));
    rendered(withHelper(), "a", cancellable);
}

TEST(MarkdownRisk, KnowsTheShapesTheParserIsSlowFor) {
    for (const std::string& text :
         {wideTable(), repeated("|a", 16'000) + "\n" + repeated("|-", 16'000) + "\n|\n|\n",
          repeated("![[]()", 5000), repeated("a <?", 20'000), repeated("a <![CDATA[", 9000),
          repeated("a <!A ", 20'000), repeated("~[a](b) ", 5000), repeated("a|b\n-|\n", 5000),
          repeated("> ", 20'000) + "\n" + repeated("\n", 20'000),
          "[a]: /" + repeated("u", 20'000) + "\n\n" + repeated("[a]", 20'000)}) {
        EXPECT_EQ(riskOf(text), MarkdownRisk::risky) << text.substr(0, 20);
    }
}

TEST(MarkdownRisk, OrdinaryNotesAreNotSuspected) {
    const std::string note =
        "# Title\n\nText with a [link](http://a.b) and ![image](c.png), ~~old~~ <b>x</b>.\n\n"
        "- [ ] task\n  - inner\n\n| a | b | c |\n|---|:-:|--:|\n| 1 | 2 | 3 |\n| 4 | 5 | 6 |\n\n"
        "```php\n<?php echo 1; ?>\n```\n\n---\n\n> quote\n";
    EXPECT_EQ(riskOf(note), MarkdownRisk::ordinary);
    EXPECT_EQ(riskOf(repeated(note, 400)), MarkdownRisk::ordinary);
    EXPECT_EQ(riskOf(repeated("a line of a note\n\n", 100'000)), MarkdownRisk::large);
}

}  // namespace
}  // namespace corvel
