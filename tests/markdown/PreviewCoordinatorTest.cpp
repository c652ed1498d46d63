#include "markdown/PreviewCoordinator.h"
#include "markdown/PreviewPage.h"

#include <glibmm/main.h>
#include <gmock/gmock.h>

#include <deque>

namespace corvel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Keeps what is asked of it; the test decides when it answers.
class FakeWebView : public WebView {
public:
    void loadPage(const std::string& html) override { pages.push_back(html); }
    void evaluate(const std::string& script, Evaluated done) override {
        // Every new page gets this one first; what it does only a web view can tell.
        if (script == PreviewPage::placeScript()) return;
        scripts.push_back(script);
        if (done) m_waiting.push_back(std::move(done));
    }
    void terminate() override { ++terminations; }
    void setScrollHandler(std::function<void(double)> handler) override {
        scroll = std::move(handler);
    }
    sigc::signal<void()>& signalLoaded() override { return m_loaded; }
    sigc::signal<void(const std::string&)>& signalLinkActivated() override { return m_link; }
    sigc::signal<void()>& signalFailed() override { return m_failed; }

    void answer(const std::optional<std::string>& error = std::nullopt) {
        ASSERT_FALSE(m_waiting.empty());
        auto done = std::move(m_waiting.front());
        m_waiting.pop_front();
        done(error);
    }
    std::vector<std::string> takeScripts() { return std::exchange(scripts, {}); }

    std::vector<std::string> pages;
    std::vector<std::string> scripts;
    std::function<void(double)> scroll;
    int terminations = 0;

private:
    std::deque<Evaluated> m_waiting;
    sigc::signal<void()> m_loaded;
    sigc::signal<void(const std::string&)> m_link;
    sigc::signal<void()> m_failed;
};

class PreviewCoordinatorTest : public testing::Test {
protected:
    PreviewCoordinatorTest() { listen(); }

    void showLoaded(const std::string& body) {
        coordinator->show("css", body);
        view.signalLoaded().emit();
        view.answer();
        view.takeScripts();
    }

    void listen() {
        coordinator->signalShown().connect([this] { ++shown; });
        coordinator->signalUnavailable().connect([this] { ++unavailable; });
        coordinator->signalLinkOpened().connect([this](auto& url) { opened.push_back(url); });
    }

    void beImpatient() {
        coordinator = PreviewCoordinator::create(view, std::chrono::milliseconds(20));
        listen();
    }

    void waitForUnavailable(int times) {
        while (unavailable < times)
            Glib::MainContext::get_default()->iteration(true);
    }

    FakeWebView view;
    std::shared_ptr<PreviewCoordinator> coordinator = PreviewCoordinator::create(view);
    std::vector<std::string> opened;
    int shown = 0;
    int unavailable = 0;
};

std::string update(const std::string& body) {
    return PreviewPage::updateScript(body);
}

TEST_F(PreviewCoordinatorTest, LoadsAnEmptyPageOnceAndPushesTheLastBodyThatWaited) {
    coordinator->show("css", "one");
    coordinator->show("css", "two");
    EXPECT_THAT(view.pages, ElementsAre(PreviewPage::html("css", "")));
    EXPECT_THAT(view.scripts, IsEmpty());

    view.signalLoaded().emit();
    EXPECT_THAT(view.scripts, ElementsAre(update("two")));
    view.answer();
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(view.pages.size(), 1U);
}

TEST_F(PreviewCoordinatorTest, PushesOnlyTheNewestOfTheBodiesThatCameDuringAPush) {
    showLoaded("zero");
    coordinator->show("css", "one");
    coordinator->show("css", "two");
    coordinator->show("css", "three");
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("one")));
    view.answer();
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("three")));
    view.answer();
    coordinator->show("css", "three");
    EXPECT_THAT(view.scripts, IsEmpty()) << "nothing changed";
}

TEST_F(PreviewCoordinatorTest, ReloadsForAnotherStylesheetAndReturnsToThePosition) {
    showLoaded("body");
    view.scroll(0.25);
    coordinator->show("other css", "body");
    EXPECT_EQ(view.pages.back(), PreviewPage::html("other css", ""));
    view.signalLoaded().emit();
    view.answer();
    EXPECT_THAT(view.scripts, ElementsAre(update("body"), "scrollToPercent(0.25);"));
}

TEST_F(PreviewCoordinatorTest, StartsAnotherNoteAtItsTop) {
    showLoaded("body");
    view.scroll(0.5);
    coordinator->show("css", "another", 0.0);
    view.answer();
    EXPECT_THAT(view.scripts, ElementsAre(update("another"), "scrollToPercent(0);"));
}

TEST_F(PreviewCoordinatorTest, TriesAFailedPushOnceMoreInAFreshPageThenGivesUpOnThatBody) {
    showLoaded("good");
    testing::internal::CaptureStdout();
    coordinator->show("css", "bad");
    view.answer("no such function");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "JS update failed: no such function\n");
    EXPECT_EQ(view.pages.size(), 2U);
    view.signalLoaded().emit();
    view.answer("still none");
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("bad"), update("bad")));
    EXPECT_EQ(unavailable, 1);

    coordinator->show("css", "bad");
    EXPECT_EQ(view.pages.size(), 2U) << "the same body is not tried again";
    EXPECT_EQ(unavailable, 2);

    coordinator->show("css", "better");
    view.signalLoaded().emit();
    view.answer();
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("better")));
    EXPECT_EQ(shown, 2);
}

TEST_F(PreviewCoordinatorTest, TakesANewerBodyWhenTheOneBeforeFails) {
    showLoaded("good");
    coordinator->show("css", "bad");
    coordinator->show("css", "newer");
    view.answer("failed");
    view.signalLoaded().emit();
    view.answer();
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("bad"), update("newer")));
    EXPECT_EQ(unavailable, 0);
}

TEST_F(PreviewCoordinatorTest, ShowsABodyThatEndsTheProcessTwiceAtMost) {
    showLoaded("deadly");
    view.signalFailed().emit();
    view.signalLoaded().emit();
    view.answer();
    view.signalFailed().emit();
    EXPECT_EQ(view.pages.size(), 2U);
    EXPECT_EQ(unavailable, 1);
}

TEST_F(PreviewCoordinatorTest, EndsAProcessThatDoesNotAnswerAndTriesItsBodyOnceMore) {
    beImpatient();
    showLoaded("good");
    coordinator->show("css", "slow");
    waitForUnavailable(1);
    EXPECT_EQ(view.terminations, 1);
    EXPECT_EQ(view.pages.size(), 2U);
    view.answer();  // of the page that is gone
    EXPECT_EQ(shown, 1);
    view.signalLoaded().emit();
    view.answer();
    EXPECT_THAT(view.takeScripts(), ElementsAre(update("slow"), update("slow")));
    EXPECT_EQ(shown, 2) << "the machine was busy, nothing else";

    coordinator->show("css", "endless");
    waitForUnavailable(2);
    view.signalLoaded().emit();
    waitForUnavailable(3);
    EXPECT_EQ(view.terminations, 3);
    coordinator->show("css", "endless");
    EXPECT_EQ(view.pages.size(), 3U) << "given up";
    EXPECT_EQ(unavailable, 4);
}

TEST_F(PreviewCoordinatorTest, TriesAPageThatIsLateToLoadOnceMore) {
    beImpatient();
    coordinator->show("css", "body");
    waitForUnavailable(1);
    EXPECT_EQ(view.pages.size(), 2U);
    view.signalLoaded().emit();
    view.answer();
    EXPECT_EQ(shown, 1);
}

TEST_F(PreviewCoordinatorTest, FollowsLinksByTheirFragmentAndHandsOthersToTheSystem) {
    showLoaded("body");
    view.signalLinkActivated().emit("about:blank#za%C5%BC%C3%B3%C5%82%C4%87-it's");
    view.signalLinkActivated().emit("about:blank%23second");
    EXPECT_THAT(view.takeScripts(), ElementsAre(PreviewPage::jumpScript("zażółć-it's"),
                                                PreviewPage::jumpScript("second")));
    for (const char* url :
         {"https://example.org/", "HTTP://example.org/", "mailto:a@example.org",
          "file:///etc/passwd", "javascript:alert(1)", "smb://host/", "about:blank"}) {
        view.signalLinkActivated().emit(url);
    }
    EXPECT_THAT(opened,
                ElementsAre("https://example.org/", "HTTP://example.org/", "mailto:a@example.org"));
    EXPECT_THAT(view.scripts, IsEmpty());
}

TEST_F(PreviewCoordinatorTest, KeepsAScrollRequestUntilThePageIsThere) {
    std::vector<double> reported;
    coordinator->signalScrollChanged().connect([&](double at) { reported.push_back(at); });
    showLoaded("body");
    coordinator->setScrollPercent(0.5);
    EXPECT_THAT(view.takeScripts(), ElementsAre("scrollToPercent(0.5);"));
    view.scroll(0.75);
    EXPECT_THAT(reported, ElementsAre(0.75));
    coordinator.reset();
    view.scroll(1.0);
    EXPECT_THAT(reported, ElementsAre(0.75)) << "a closed preview hears nothing";
}

}  // namespace
}  // namespace corvel
