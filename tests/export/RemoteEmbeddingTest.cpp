#include "export/RemoteEmbedding.h"
#include "support/MainLoop.h"

#include <gtest/gtest.h>
#include <libsoup/soup.h>

#include <optional>

namespace corvel {
namespace {

/// A server on loopback with one picture and a page that is none.
class RemoteEmbeddingTest : public testing::Test {
protected:
    RemoteEmbeddingTest() : server(soup_server_new(nullptr, nullptr)) {
        soup_server_add_handler(server.get(), nullptr, &RemoteEmbeddingTest::answer, nullptr,
                                nullptr);
        EXPECT_TRUE(
            soup_server_listen_local(server.get(), 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr));
        GSList* addresses = soup_server_get_uris(server.get());
        host = "http://127.0.0.1:" +
               std::to_string(g_uri_get_port(static_cast<GUri*>(addresses->data)));
        g_slist_free_full(addresses, [](gpointer uri) { g_uri_unref(static_cast<GUri*>(uri)); });
    }

    static void answer(
        SoupServer*, SoupServerMessage* message, const char* path, GHashTable* query, gpointer) {
        const bool isImage = std::string_view(path) == "/a.gif" && query != nullptr;
        const std::string_view body = isImage ? "GIF89a......" : "<html>";
        soup_server_message_set_status(message, 200, nullptr);
        soup_server_message_set_response(message, "image/gif", SOUP_MEMORY_COPY, body.data(),
                                         body.size());
    }

    std::optional<std::string> embedded(const std::string& html) {
        std::optional<std::string> result;
        RemoteEmbedding::start(html, images, cancellable,
                               [&](std::string page) { result = std::move(page); });
        EXPECT_FALSE(result.has_value()) << "never before the function returns";
        turnUntil([&] { return result.has_value() || cancellable->is_cancelled(); });
        return result;
    }

    GObjectHandle<SoupServer> server;
    RemoteImages images;
    Glib::RefPtr<Gio::Cancellable> cancellable = Gio::Cancellable::create();
    std::string host;
};

TEST_F(RemoteEmbeddingTest, BringsWhatIsAnImageAndLeavesTheRest) {
    const std::string good = "<img src=\"" + host + "/a.gif?x=1&amp;y=2\" alt=\"\">";
    const std::string bad = "<img src=\"" + host + "/page\" alt=\"\">";
    EXPECT_EQ(embedded("<p>" + good + bad + good + "</p>"),
              "<p><img src=\"data:image/gif;base64,R0lGODlhLi4uLi4u\" alt=\"\">" + bad +
                  "<img src=\"data:image/gif;base64,R0lGODlhLi4uLi4u\" alt=\"\"></p>");
    EXPECT_EQ(embedded("<p>none</p>"), "<p>none</p>");
}

TEST_F(RemoteEmbeddingTest, SaysNothingOnceItIsCancelled) {
    bool answered = false;
    RemoteEmbedding::start("<img src=\"" + host + "/a.gif?x\">", images, cancellable,
                           [&](const std::string&) { answered = true; });
    cancellable->cancel();
    bool isLater = false;
    Glib::signal_timeout().connect_once([&] { isLater = true; }, 50);
    EXPECT_TRUE(turnUntil([&] { return isLater; }));
    EXPECT_FALSE(answered);
}

}  // namespace
}  // namespace corvel
