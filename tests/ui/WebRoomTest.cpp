#include "markdown/PreviewCoordinator.h"
#include "markdown/PreviewPage.h"
#include "platform/gtk/WebRoom.h"

#include <giomm/init.h>
#include <giomm/socketlistener.h>
#include <giomm/socketservice.h>
#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <gtkmm/init.h>
#include <gtkmm/window.h>

#include <chrono>
#include <fstream>
#include <string>

namespace corvel {
namespace {

using namespace std::chrono_literals;

/// A window with a closed room in it, and questions to the page that only a test may ask.
class WebRoomTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gtk_init();
        Gtk::init_gtkmm_internals();
    }

    WebRoomTest() {
        window.set_default_size(400, 300);
        window.set_child(view->widget());
        window.present();
        coordinator->signalShown().connect([this] { shown = true; });
        coordinator->signalLinkOpened().connect([this](auto& url) { opened = url; });
    }
    ~WebRoomTest() override { window.unset_child(); }

    void show(const std::string& body) {
        shown = false;
        coordinator->show("p { margin: 0; }", body);
        ASSERT_TRUE(waitFor([this] { return shown; }));
    }

    template <typename Condition>
    static bool waitFor(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + 30s;
        const auto tick = Glib::signal_timeout().connect([] { return true; }, 10);
        while (!condition() && std::chrono::steady_clock::now() < end) {
            Glib::MainContext::get_default()->iteration(true);
        }
        sigc::connection(tick).disconnect();
        return condition();
    }

    /// The value of an expression in the page, as text.
    std::string ask(const std::string& expression) {
        std::optional<std::string> answer;
        const auto answered = [](GObject* source, GAsyncResult* result, gpointer data) {
            const GObjectHandle<JSCValue> value(webkit_web_view_evaluate_javascript_finish(
                WEBKIT_WEB_VIEW(source), result, nullptr));
            const Handle<char, g_free> text(value ? jsc_value_to_string(value.get()) : nullptr);
            *static_cast<std::optional<std::string>*>(data) = text ? text.get() : "(error)";
        };
        webkit_web_view_evaluate_javascript(view->handle(), expression.c_str(), -1, nullptr,
                                            nullptr, nullptr, answered, &answer);
        waitFor([&] { return answer.has_value(); });
        return answer.value_or("(no answer)");
    }

    WebRoom room;
    std::unique_ptr<WebKitView> view = room.makeView(PreviewPage::scriptHash());
    std::shared_ptr<PreviewCoordinator> coordinator = PreviewCoordinator::create(*view, 30s);
    Gtk::Window window;
    bool shown = false;
    std::string opened;
};

TEST_F(WebRoomTest, ShowsABodyExactlyAsItIs) {
    show("<p id=\"p\">`back` \\slash\\\\ ${1 + 1} $ { \\${2} żółć</p>");
    EXPECT_EQ(ask("document.getElementById('p').textContent"),
              "`back` \\slash\\\\ ${1 + 1} $ { \\${2} żółć");
    show("<p id=\"p\">second</p>");
    EXPECT_EQ(ask("document.getElementById('content').innerHTML"), "<p id=\"p\">second</p>");
}

TEST_F(WebRoomTest, RunsNothingOfTheNoteAndSendsNothing) {
    int visitors = 0;
    const auto server = Gio::SocketService::create();
    const auto port = std::to_string(server->add_any_inet_port());
    server->signal_incoming().connect(
        [&](const Glib::RefPtr<Gio::SocketConnection>&, const Glib::RefPtr<Glib::Object>&) {
            ++visitors;
            return true;
        },
        false);
    server->start();
    const std::string host = "http://127.0.0.1:" + port + "/";
    show(
        "<script>window.hit = 1</script></script><script>window.hit = 2</script>"
        "<img src=x onerror='window.hit = 3'><svg onload='window.hit = 4'></svg>"
        "<iframe srcdoc='<script>top.hit = 5</script>'></iframe><iframe src='" +
        host +
        "'></iframe>"
        "<form action='" +
        host +
        "' id=f><input name=a></form>"
        "<meta http-equiv=refresh content='0;url=" +
        host + "'><base href='" + host +
        "'>"
        "<img src='" +
        host +
        "a.png'><img id=file src='file:///usr/share/icons/hicolor/index.theme'>"
        "<link rel=stylesheet href='" +
        host + "a.css'><link rel=prefetch href='" + host +
        "'>"
        "<link rel=preconnect href='" +
        host + "'><link rel=dns-prefetch href='" + host +
        "'>"
        "<style>@import url(" +
        host + "b.css); body { background: url(" + host +
        "c.png); }"
        "input::before { content: url(" +
        host +
        "d.png); }</style>"
        "<video src='" +
        host + "' autoplay></video><object data='" + host +
        "'></object>"
        "<embed src='" +
        host +
        "'><details open ontoggle='window.hit = 6'></details>"
        "<input autofocus onfocus='window.hit = 7'><a id=js href='javascript:window.hit = "
        "8'>x</a>");
    // What may come later than the load has had its turn after these.
    ask("document.getElementById('js').click()");
    ask("document.getElementById('f').submit()");
    ask("new Promise(done => setTimeout(done, 300))");
    show("<p id=after>after</p>");
    EXPECT_EQ(ask("String(window.hit)"), "undefined");
    EXPECT_EQ(ask("document.getElementById('after').textContent"), "after");
    EXPECT_EQ(ask("location.href"), "about:blank");
    EXPECT_EQ(visitors, 0);
    EXPECT_EQ(opened, "") << "only a click of the reader opens a link";
}

TEST_F(WebRoomTest, ScrollsToAHeadingAndReportsNoMoveOfItsOwn) {
    std::string tall = "<div style='height: 3000px'>tall</div><h1 id=\"it's-far\">Far</h1>";
    double reported = -1;
    coordinator->signalScrollChanged().connect([&](double at) { reported = at; });
    show(tall + "<div style='height: 3000px'></div>");
    coordinator->setScrollPercent(0.25);
    EXPECT_TRUE(waitFor([this] { return ask("window.scrollY > 1000") == "true"; }));
    view->signalLinkActivated().emit("about:blank#it's-far");
    EXPECT_TRUE(waitFor([this] {
        return ask("Math.abs(document.getElementsByTagName('h1')[0].getBoundingClientRect().top)"
                   " < 60") == "true";
    }));
    EXPECT_TRUE(waitFor([&] { return reported > 0.4; })) << "the jump is the reader's own move";
}

TEST_F(WebRoomTest, RecoversFromAProcessThatWasEnded) {
    show("<p id=p>one</p>");
    view->terminate();
    shown = false;
    coordinator->show("p { margin: 1px; }", "<p id=p>two</p>");
    ASSERT_TRUE(waitFor([this] { return shown; }));
    EXPECT_EQ(ask("document.getElementById('p').textContent"), "two");
}

}  // namespace
}  // namespace corvel
