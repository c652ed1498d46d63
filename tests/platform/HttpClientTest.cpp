#include "platform/HttpClient.h"
#include "support/MainLoop.h"
#include "support/ScriptedServer.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace corvel {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using Kind = HttpError::Kind;

/// What came of one request.
struct Result {
    unsigned status = 0;
    std::vector<std::string> lines;
    bool isEnded = false;
    std::optional<HttpError> error;

    HttpTransfer::Handler handler() {
        return {[this](unsigned code) { status = code; },
                [this](std::string_view line) { lines.emplace_back(line); },
                [this](const auto& why) {
                    error = why;
                    isEnded = true;
                }};
    }
};

class HttpClientTest : public testing::Test {
protected:
    Result post(const std::string& url, const std::string& key = "secret") const {
        const HttpClient client(limits);
        Result result;
        const auto transfer =
            client.post({url, {{"x-api-key", key}}, "application/json", "{}"}, result.handler());
        EXPECT_FALSE(result.isEnded);
        EXPECT_TRUE(turnUntil([&] { return result.isEnded; }));
        return result;
    }
    Result postTo(const ScriptedServer& to) const { return post(to.url() + "/path?a=b"); }
    static Kind kindOf(const Result& result) { return result.error.value().kind; }

    ScriptedServer server;
    HttpClient::Limits limits{5s};
};

TEST_F(HttpClientTest, SendsTheRequestAndGivesTheAnswerInLines) {
    server.answer(201, "one\r\n\r\ntwo\nlast");
    const auto result = postTo(server);
    EXPECT_EQ(result.status, 201U);
    EXPECT_THAT(result.lines, ElementsAre("one", "", "two", "last"));
    EXPECT_FALSE(result.error);
    const auto& request = server.requests().at(0);
    EXPECT_TRUE(request.starts_with("POST /path?a=b HTTP/1.1\r\n")) << request;
    EXPECT_THAT(request, HasSubstr("x-api-key: secret\r\n"));
    EXPECT_THAT(request, HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_TRUE(request.ends_with("\r\n\r\n{}"));
}

TEST_F(HttpClientTest, PutsLinesTogetherFromSingleBytes) {
    server.answer({ScriptedServer::chunkedHead() + ScriptedServer::chunkOf("zażółć\r") +
                       ScriptedServer::chunkOf("\ng\xC4") + ScriptedServer::chunkOf("\x99\n") +
                       "0\r\n\r\n",
                   1});
    const auto result = postTo(server);
    EXPECT_THAT(result.lines, ElementsAre("zażółć", "gę"));
    EXPECT_FALSE(result.error);
}

TEST_F(HttpClientTest, TellsHowAnAnswerFailed) {
    server.answer({ScriptedServer::chunkedHead() + "ff\r\none\ntw"});
    const auto cut = postTo(server);
    EXPECT_THAT(cut.lines, ElementsAre("one"));
    EXPECT_EQ(kindOf(cut), Kind::unreachable);

    server.answer({"no HTTP at all\r\n\r\n"});
    EXPECT_EQ(kindOf(postTo(server)), Kind::notHttp);

    server.answer({""});
    EXPECT_EQ(kindOf(postTo(server)), Kind::unreachable);
    EXPECT_EQ(kindOf(post("http://127.0.0.1:1/")), Kind::unreachable);
    for (const char* url : {"", "127.0.0.1", "ftp://127.0.0.1/", "http:///x"}) {
        EXPECT_EQ(kindOf(post(url)), Kind::badRequest) << url;
    }
}

TEST_F(HttpClientTest, SendsNoHeaderThatWouldBreakTheRequest) {
    server.answer(200, "");
    for (const auto& key :
         {std::string("a\nX-Other: 1"), std::string("a\r"), std::string("a\0b", 3)}) {
        EXPECT_EQ(kindOf(post(server.url(), key)), Kind::badRequest);
    }
    EXPECT_THAT(server.requests(), IsEmpty());
    EXPECT_FALSE(post(server.url(), " with spaces, zażółć ").error);
}

TEST_F(HttpClientTest, EndsWhenTheServerFallsSilent) {
    limits.silence = 150ms;
    server.answer(
        {ScriptedServer::chunkedHead() + ScriptedServer::chunkOf("one\ntwo"), 65536, 1, "", false});
    const auto silent = postTo(server);
    EXPECT_THAT(silent.lines, ElementsAre("one"));
    EXPECT_EQ(kindOf(silent), Kind::timedOut);

    server.answer({"", 65536, 1, "", false});
    EXPECT_EQ(kindOf(postTo(server)), Kind::timedOut);
}

TEST_F(HttpClientTest, RefusesALineThatDoesNotEnd) {
    const std::string megabyte(1'000'000, 'x');
    server.answer({megabyte, 65536, 100, "HTTP/1.1 200 OK\r\n\r\nfirst\n"});
    const auto result = postTo(server);
    EXPECT_THAT(result.lines, ElementsAre("first"));
    EXPECT_EQ(kindOf(result), Kind::lineTooLong);
    EXPECT_LT(server.sentBytes(), 40'000'000U);
    EXPECT_TRUE(turnUntil([&] { return server.leftConnections() == 1; }));

    server.answer({megabyte, 65536, 5, "HTTP/1.1 200 OK\r\n\r\n"});
    EXPECT_EQ(postTo(server).lines.at(0).size(), 5 * megabyte.size());
}

TEST_F(HttpClientTest, DropsTheConnectionWithItsTransfer) {
    const HttpClient client(limits);
    Result result;
    std::string block;
    for (int i = 0; i < 4096; ++i)
        block += "x\n";
    server.answer({block, 65536, 1000'000'000, "HTTP/1.1 200 OK\r\n\r\n"});
    std::unique_ptr<HttpTransfer> transfer;
    auto handler = result.handler();
    handler.line = [&](std::string_view line) {
        result.lines.emplace_back(line);
        if (result.lines.size() == 2) transfer.reset();
    };
    transfer = client.post({server.url(), {}, "text/plain", "{}"}, std::move(handler));
    EXPECT_TRUE(turnUntil([&] { return server.leftConnections() == 1; }));
    EXPECT_EQ(result.lines.size(), 2U);
    EXPECT_FALSE(result.isEnded);

    transfer = client.post({"no address", {}, "text/plain", ""}, result.handler());
    transfer.reset();
    server.answer(200, "");
    postTo(server);
    EXPECT_FALSE(result.isEnded);
}

TEST_F(HttpClientTest, FollowsNoRedirectToAnotherServer) {
    ScriptedServer other;
    other.answer(200, "stolen\n");
    for (const int status : {301, 302, 303, 307, 308}) {
        server.answer(status, "", "Location: " + other.url() + "/\r\n");
        EXPECT_EQ(kindOf(postTo(server)), Kind::redirected) << status;
        server.answer(status, "", "Location: https://127.0.0.1/\r\n");
        EXPECT_EQ(kindOf(postTo(server)), Kind::redirected) << status;
    }
    EXPECT_THAT(other.requests(), IsEmpty());

    // On the same server it is followed, but not for ever.
    const auto before = server.requests().size();
    server.answer(308, "", "Location: /again\r\n");
    EXPECT_EQ(kindOf(postTo(server)), Kind::redirected);
    EXPECT_EQ(server.requests().size(), before + 6);
    EXPECT_THAT(server.requests().back(), HasSubstr("POST /again"));
    EXPECT_THAT(server.requests().back(), HasSubstr("x-api-key: secret"));
}

TEST_F(HttpClientTest, SendsNothingToAServerThatCannotProveWhoItIs) {
    const TemporaryFolder folder;
    const auto key = folder.path() / "key.pem";
    const auto certificate = folder.path() / "certificate.pem";
    const std::string make =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 "
        "-subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout " +
        key.string() + " -out " + certificate.string() + " 2>&1 >/dev/null";
    ASSERT_EQ(std::system(make.c_str()), 0);
    ScriptedServer impostor(Gio::TlsCertificate::create(certificate.string(), key.string()));
    impostor.answer(200, "stolen\n");
    EXPECT_EQ(kindOf(postTo(impostor)), Kind::certificate);
    EXPECT_THAT(impostor.requests(), IsEmpty());
}

}  // namespace
}  // namespace corvel
