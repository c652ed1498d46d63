#include "markdown/MarkdownParserService.h"
#include "ui/PageTest.h"

#include <giomm/socketlistener.h>
#include <giomm/socketservice.h>
#include <gmock/gmock.h>
#include <libsoup/soup.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace corvel {
namespace {

class WebRoomTest : public PageTest {};

TEST_F(WebRoomTest, ShowsABodyExactlyAsItIs) {
    show("<p id=\"p\">`back` \\slash\\\\ ${1 + 1} $ { \\${2} żółć</p>");
    EXPECT_EQ(ask("document.getElementById('p').textContent"),
              "`back` \\slash\\\\ ${1 + 1} $ { \\${2} żółć");
    show("<p id=\"p\">\\uD800 \\x41 \xED\xA0\x80 \u2028 a\r\nb</p><script>`;</script>`</p>");
    EXPECT_EQ(ask("document.getElementById('p').textContent.slice(0, 12)"), "\\uD800 \\x41 ");
    EXPECT_EQ(ask("document.getElementById('p').textContent.slice(-5)"), "\u2028 a\nb");
    using namespace std::string_literals;
    show("<p id=\"p\">before\0behind</p>"s);
    EXPECT_EQ(ask("document.getElementById('p').textContent"), "beforebehind");
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

constexpr const char* kPicture =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"40\" height=\"900\"></svg>";

/// A web server on this machine that has one picture.
class PictureServer {
public:
    PictureServer() : m_server(soup_server_new(nullptr, nullptr)) {
        soup_server_add_handler(m_server.get(), nullptr, &PictureServer::serve, this, nullptr);
        soup_server_listen_local(m_server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
        GSList* uris = soup_server_get_uris(m_server.get());
        const Handle<char, g_free> text(g_uri_to_string(static_cast<GUri*>(uris->data)));
        address = text.get();
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    }

    std::string address;
    int visits = 0;

private:
    static void serve(
        SoupServer*, SoupServerMessage* message, const char*, GHashTable*, gpointer self) {
        ++static_cast<PictureServer*>(self)->visits;
        soup_server_message_set_status(message, 200, nullptr);
        soup_server_message_set_response(message, "text/plain", SOUP_MEMORY_STATIC, kPicture,
                                         std::string_view(kPicture).size());
    }

    GObjectHandle<SoupServer> m_server;
};

TEST_F(WebRoomTest, GetsImagesFromTheWebOnlyThroughTheProgramAndOnlyIfItMay) {
    PictureServer server;
    const std::string body = MarkdownParserService::markRemoteImages(
        "<img id=i src=\"" + server.address + "a?b=1&amp;c=%20d\"><img src=x>", room.imageKey());
    const auto isSettled = [this] {
        return ask("Array.from(document.images).every(i => i.complete)") == "true";
    };
    show(body);
    EXPECT_TRUE(waitFor(isSettled));
    EXPECT_EQ(server.visits, 0);
    mayLoadImages = true;
    show("");
    show(body);
    EXPECT_TRUE(waitFor(isSettled));
    EXPECT_EQ(ask("document.getElementById('i').naturalHeight"), "900");
    EXPECT_EQ(server.visits, 1);
    show("<img src=\"corvel-image:" + server.address +
         "e\"><p style=\"background: url(corvel-image:" + server.address + "f)\">x</p>");
    EXPECT_TRUE(waitFor(isSettled));
    EXPECT_EQ(server.visits, 1) << "asked for by a page that cannot know the key";
}

TEST_F(WebRoomTest, KeepsThePlaceWhenABodyIsReplacedAndWhenImagesArrive) {
    mayLoadImages = true;
    PictureServer server;
    const Handle<char, g_free> data(g_base64_encode(reinterpret_cast<const guchar*>(kPicture),
                                                    std::string_view(kPicture).size()));
    const auto body = [&](const std::string& words) {
        return "<p>" + words + "</p><img src=\"data:image/svg+xml;base64," +
               std::string(data.get()) + "\"><p><img src=\"corvel-image:" + room.imageKey() +
               server.address + "a\"></p><div id=below style='height: 900px'></div>";
    };
    const auto isWhole = [this] { return ask("document.body.scrollHeight > 2700") == "true"; };
    coordinator->show("p { margin: 0; }", body("one"), 0.9);
    ASSERT_TRUE(waitFor(isWhole));
    EXPECT_TRUE(waitFor([this] {
        return ask("window.scrollY > 0.89 * (document.body.scrollHeight - innerHeight)") == "true";
    })) << "the place was asked for before the images were there";

    const std::string place = ask("window.scrollY");
    for (const char* words : {"two", "three"}) {
        show(body(words));
        EXPECT_EQ(ask("document.body.scrollHeight > 2700 && window.scrollY"), place)
            << "at once, not after the images have been loaded again";
    }

    const std::string top = "document.getElementById('below').getBoundingClientRect().top";
    ask("document.getElementById('below').scrollIntoView()");
    EXPECT_TRUE(waitFor([&] { return ask(top) == "0"; }));
    show("<img src=\"corvel-image:" + room.imageKey() + server.address + "b\">" + body("four"));
    EXPECT_TRUE(waitFor([this] { return ask("document.body.scrollHeight > 3600") == "true"; }));
    EXPECT_TRUE(waitFor([&] { return ask("Math.abs(" + top + ") < 60") == "true"; }))
        << "what the reader sees stays, whatever arrives above it";
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

/// Kills the processes that show this program's pages; false when there are none.
bool killWebProcesses() {
    const auto parentOf = [](const std::string& pid) {
        std::ifstream file("/proc/" + pid + "/status");
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with("PPid:")) return line.substr(line.find_last_of(" \t") + 1);
        }
        return std::string();
    };
    const auto isOurs = [&](std::string pid) {
        const std::string self = std::to_string(getpid());
        while (!pid.empty() && pid != "0" && pid != self)
            pid = parentOf(pid);
        return pid == self;
    };
    bool hasKilled = false;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string pid = entry.path().filename();
        std::ifstream file(entry.path() / "comm");
        std::string name;
        if (!std::getline(file, name) || name != "WebKitWebProces" || !isOurs(pid)) continue;
        hasKilled = kill(std::stoi(pid), SIGKILL) == 0 || hasKilled;
    }
    return hasKilled;
}

TEST_F(WebRoomTest, ComesBackAtItsPlaceAfterACrashButNotAfterASecondOfTheSameBody) {
    bool isUnavailable = false;
    coordinator->signalUnavailable().connect([&] { isUnavailable = true; });
    show("<div style='height: 3300px'>tall</div>");
    coordinator->setScrollPercent(0.5);
    EXPECT_TRUE(waitFor([this] { return ask("window.scrollY > 1400") == "true"; }));
    shown = false;
    ASSERT_TRUE(killWebProcesses());
    ASSERT_TRUE(waitFor([&] { return shown; }));
    EXPECT_TRUE(waitFor([this] { return ask("window.scrollY > 1400") == "true"; }));
    ASSERT_TRUE(killWebProcesses());
    EXPECT_TRUE(waitFor([&] { return isUnavailable; }));
    show("<p id=p>another</p>");
    EXPECT_EQ(ask("document.getElementById('p').textContent"), "another");
}

TEST_F(WebRoomTest, ShowsTheLastBodyThatCameBeforeThePageAtTheLastPlace) {
    coordinator->show("p { margin: 0; }", "<p>first</p>");
    coordinator->setScrollPercent(0.9);
    coordinator->show("p { margin: 0; }", "<div style='height: 3300px'>last</div>");
    coordinator->setScrollPercent(0.5);
    EXPECT_TRUE(waitFor([this] { return shown; }));
    EXPECT_TRUE(
        waitFor([this] { return ask("window.scrollY > 1400 && scrollY < 1600") == "true"; }));
    EXPECT_EQ(ask("document.getElementById('content').textContent"), "last");
}

TEST_F(WebRoomTest, NeitherMovesNorReportsAPageShorterThanTheWindow) {
    int reports = 0;
    coordinator->signalScrollChanged().connect([&](double) { ++reports; });
    show("<p id=\"a\\b\">short</p>");
    coordinator->setScrollPercent(1);
    EXPECT_EQ(ask("window.scrollY + ' ' + _isApplyingScroll"), "0 false");
    show("<div style='height: 3300px'></div><p id=\"a\\b'c\">far</p>");
    coordinator->setScrollPercent(0.5);
    EXPECT_TRUE(
        waitFor([this] { return ask("window.scrollY > 1400 && !_isApplyingScroll") == "true"; }));
    EXPECT_EQ(reports, 0);
    view->signalLinkActivated().emit("about:blank#a%5Cb'c");
    EXPECT_TRUE(waitFor([this] { return ask("window.scrollY > 2900") == "true"; }));
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
