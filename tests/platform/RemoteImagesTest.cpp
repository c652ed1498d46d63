#include "platform/RemoteImages.h"
#include "support/MainLoop.h"

#include <gmock/gmock.h>
#include <libsoup/soup.h>

#include <map>
#include <optional>
#include <string>

namespace corvel {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

const std::string kPng("\x89PNG\r\n\x1a\n and so on");

/// A web server on this machine.
class RemoteImagesTest : public testing::Test {
protected:
    RemoteImagesTest() : m_server(soup_server_new(nullptr, nullptr)) {
        soup_server_add_handler(m_server.get(), nullptr, &RemoteImagesTest::serve, this, nullptr);
        soup_server_listen_local(m_server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
        GSList* uris = soup_server_get_uris(m_server.get());
        const Handle<char, g_free> text(g_uri_to_string(static_cast<GUri*>(uris->data)));
        host = text.get();
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
        limits.bytes = 200'000;
        limits.time = 2s;
    }

    RemoteImages::Image fetch(RemoteImages& images, const std::string& url) {
        std::optional<RemoteImages::Image> answer;
        images.fetch(url, [&](const RemoteImages::Image& image) { answer = image; });
        EXPECT_TRUE(turnUntil([&] { return answer.has_value(); }));
        return answer.value_or(nullptr);
    }
    RemoteImages::Image fetch(const std::string& url) {
        RemoteImages images(limits);
        return fetch(images, url);
    }

    static void serve(
        SoupServer*, SoupServerMessage* message, const char* path, GHashTable*, gpointer self) {
        static_cast<RemoteImagesTest*>(self)->answer(message, path);
    }

    void answer(SoupServerMessage* message, const std::string& path) {
        ++visits[path];
        soup_message_headers_foreach(
            soup_server_message_get_request_headers(message),
            [](const char* name, const char* value, gpointer text) {
                static_cast<std::string*>(text)->append(name).append(": ").append(value).append(
                    "\n");
            },
            &headers);
        soup_server_message_set_status(message, path == "/404.png" ? 404 : 200, nullptr);
        soup_message_headers_append(soup_server_message_get_response_headers(message), "Set-Cookie",
                                    "a=b");
        if (path.starts_with("/to/")) {
            const std::string target = path == "/to/self"   ? path
                                       : path == "/to/file" ? "file:///etc/hostname"
                                                            : "/good.png";
            return soup_server_message_set_redirect(message, 302, target.c_str());
        }
        if (path == "/silent.png") return soup_server_message_pause(message);
        const bool isEndless = path == "/endless.png";
        const std::string body = path == "/page.png" ? "<!DOCTYPE html><html><svg></svg></html>"
                                 : isEndless         ? kPng + std::string(300'000, ' ')
                                                     : kPng;
        if (isEndless) {
            soup_message_headers_set_encoding(soup_server_message_get_response_headers(message),
                                              SOUP_ENCODING_CHUNKED);
        }
        soup_server_message_set_response(message, "image/png", SOUP_MEMORY_COPY, body.data(),
                                         body.size());
    }

    RemoteImages::Limits limits;
    std::string host;  // with a slash at its end
    std::map<std::string, int> visits;
    std::string headers;

private:
    GObjectHandle<SoupServer> m_server;
};

TEST_F(RemoteImagesTest, FetchesOnceAndTellsNothingOfTheReader) {
    RemoteImages images(limits);
    const auto image = fetch(images, host + "good.png");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->mimeType, "image/png");
    EXPECT_EQ(image->bytes, kPng);
    EXPECT_EQ(fetch(images, host + "good.png"), image);
    EXPECT_EQ(visits["/good.png"], 1);
    EXPECT_NE(fetch(images, host + "to/good"), nullptr);
    EXPECT_THAT(headers, Not(HasSubstr("Cookie")));
    EXPECT_THAT(headers, Not(HasSubstr("Referer")));
}

TEST_F(RemoteImagesTest, RefusesWhatIsNoImageOrTooMuch) {
    for (const char* path : {"page.png", "404.png", "endless.png", "to/file", "to/self"}) {
        EXPECT_EQ(fetch(host + path), nullptr) << path;
    }
    EXPECT_LE(visits["/to/self"], 6);
    EXPECT_EQ(visits["/good.png"], 0);
    for (const char* url : {"file:///usr/share/icons/hicolor/index.theme", "ftp://127.0.0.1/a.png",
                            "http:", "http:///a.png", "javascript:1", "", "//127.0.0.1/a.png"}) {
        EXPECT_EQ(fetch(url), nullptr) << url;
    }
}

TEST_F(RemoteImagesTest, WaitsForASilentServerNoLongerThanAllowedAndDoesNotAskItAgain) {
    limits.time = 100ms;
    RemoteImages images(limits);
    EXPECT_EQ(fetch(images, host + "silent.png"), nullptr);
    EXPECT_EQ(fetch(images, host + "silent.png"), nullptr);
    EXPECT_EQ(visits["/silent.png"], 1);
}

TEST_F(RemoteImagesTest, JoinsRequestsAndEndsWithItsOwner) {
    int answers = 0;
    auto images = std::make_unique<RemoteImages>(limits);
    for (int i = 0; i < 2; ++i) {
        images->fetch(host + "silent.png", [&](const auto&) { ++answers; });
    }
    EXPECT_TRUE(turnUntil([&] { return visits["/silent.png"] == 1; }));
    images.reset();
    EXPECT_NE(fetch(host + "good.png"), nullptr);
    EXPECT_EQ(answers, 0);
    EXPECT_EQ(visits["/silent.png"], 1);
}

TEST_F(RemoteImagesTest, KeepsOnlyAsMuchAsItMay) {
    limits.keptBytes = 2 * 256 + 2 * kPng.size() + 200;
    RemoteImages images(limits);
    for (const char* name : {"a", "b", "c", "a"})
        fetch(images, host + name);
    EXPECT_EQ(visits["/a"], 2);
    EXPECT_EQ(visits["/c"], 1);
}

}  // namespace
}  // namespace corvel
