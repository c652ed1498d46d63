#pragma once

#include "platform/Handle.h"
#include "platform/HttpClient.h"
#include "platform/LineSplitter.h"
#include "platform/ScopedConnection.h"

#include <libsoup/soup.h>

#include <array>
#include <chrono>
#include <memory>

namespace corvel {

/// The work of one HttpTransfer. It lives until the last call that is under way in the libraries
/// below has returned.
class HttpExchange : public std::enable_shared_from_this<HttpExchange> {
public:
    HttpExchange(SoupSession* session,
                 const HttpClient::Limits& limits,
                 HttpRequest request,
                 HttpTransfer::Handler handler);
    HttpExchange(const HttpExchange&) = delete;
    HttpExchange& operator=(const HttpExchange&) = delete;
    ~HttpExchange() = default;

    void start();
    /// Ends the transfer without a further call.
    void cancel();

private:
    using Self = std::shared_ptr<HttpExchange>;

    bool prepare(GUri* uri);
    void send();
    void answered(GAsyncResult* result);
    void redirect();
    void readOn();
    void received(GAsyncResult* result);
    void take(std::string_view chunk);
    void end(const std::optional<HttpError>& error);
    void failSoon();
    void watchSilence(std::chrono::milliseconds wait);
    void checkSilence();
    void noteArrival() { m_lastArrival = std::chrono::steady_clock::now(); }

    Self* held() { return new Self(shared_from_this()); }
    static Self taken(gpointer data);

    GObjectHandle<SoupSession> m_session;
    HttpClient::Limits m_limits;
    HttpRequest m_request;
    HttpTransfer::Handler m_handler;
    GObjectHandle<GCancellable> m_cancellable;
    GObjectHandle<SoupMessage> m_message;
    GObjectHandle<GInputStream> m_stream;
    std::array<char, 32768> m_chunk{};
    LineSplitter m_lines;
    std::chrono::steady_clock::time_point m_lastArrival;
    ScopedConnection m_timer;
    int m_redirects = 0;
    bool m_isOver = false;
};

}  // namespace corvel
