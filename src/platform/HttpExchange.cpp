#include "platform/HttpExchange.h"

#include <glibmm/main.h>

#include <string_view>
#include <utility>

namespace corvel {

namespace {

constexpr int kMostRedirects = 5;
constexpr auto kUriFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);
// Below the drawing of windows: a server that sends faster than the screen is drawn must not keep
// it from being drawn.
constexpr int kReadPriority = G_PRIORITY_DEFAULT_IDLE;

using UriHandle = Handle<GUri, g_uri_unref>;
using ErrorHandle = Handle<GError, g_error_free>;
using BytesHandle = Handle<GBytes, g_bytes_unref>;

bool canBeSent(const std::string& headerValue) {
    return headerValue.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

bool isSameServer(GUri* a, GUri* b) {
    const std::string_view hostA = g_uri_get_host(a);
    return std::string_view(g_uri_get_scheme(a)) == g_uri_get_scheme(b) &&
           g_uri_get_host(b) != nullptr && hostA == g_uri_get_host(b) &&
           g_uri_get_port(a) == g_uri_get_port(b);
}

HttpError errorOf(const GError* error) {
    using Kind = HttpError::Kind;
    if (error == nullptr) return {Kind::unreachable};
    if (error->domain == G_TLS_ERROR && error->code == G_TLS_ERROR_BAD_CERTIFICATE) {
        return {Kind::certificate, error->message};
    }
    if (g_error_matches(error, SOUP_SESSION_ERROR, SOUP_SESSION_ERROR_PARSING)) {
        return {Kind::notHttp, error->message};
    }
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT)) return {Kind::timedOut};
    return {Kind::unreachable, error->message};
}

}  // namespace

HttpExchange::HttpExchange(SoupSession* session,
                           const HttpClient::Limits& limits,
                           HttpRequest request,
                           HttpTransfer::Handler handler)
    : m_session(SOUP_SESSION(g_object_ref(session)))
    , m_limits(limits)
    , m_request(std::move(request))
    , m_handler(std::move(handler))
    , m_cancellable(g_cancellable_new())
    , m_lines(limits.lineBytes) {}

HttpExchange::Self HttpExchange::taken(gpointer data) {
    const std::unique_ptr<Self> owner(static_cast<Self*>(data));
    return std::move(*owner);
}

void HttpExchange::start() {
    const UriHandle uri(g_uri_parse(m_request.url.c_str(), kUriFlags, nullptr));
    if (!uri || !prepare(uri.get())) return failSoon();
    noteArrival();
    watchSilence(m_limits.silence);
    send();
}

void HttpExchange::cancel() {
    m_isOver = true;
    m_timer.disconnect();
    g_cancellable_cancel(m_cancellable.get());
}

bool HttpExchange::prepare(GUri* uri) {
    const std::string_view scheme = g_uri_get_scheme(uri);
    const char* host = g_uri_get_host(uri);
    if ((scheme != "http" && scheme != "https") || host == nullptr || *host == '\0') return false;
    m_message.reset(soup_message_new_from_uri("POST", uri));
    // A redirect is looked at before it is followed: the headers may hold what is meant for this
    // server alone. An unpacked answer would come late, piece by piece is the point.
    soup_message_set_flags(m_message.get(), SOUP_MESSAGE_NO_REDIRECT);
    soup_message_disable_feature(m_message.get(), SOUP_TYPE_CONTENT_DECODER);
    auto* headers = soup_message_get_request_headers(m_message.get());
    for (const auto& [name, value] : m_request.headers) {
        if (!canBeSent(value)) return false;
        soup_message_headers_append(headers, name.c_str(), value.c_str());
    }
    const BytesHandle body(g_bytes_new(m_request.body.data(), m_request.body.size()));
    soup_message_set_request_body_from_bytes(m_message.get(), m_request.contentType.c_str(),
                                             body.get());
    return true;
}

void HttpExchange::send() {
    const auto answer = [](GObject*, GAsyncResult* result, gpointer data) {
        taken(data)->answered(result);
    };
    soup_session_send_async(m_session.get(), m_message.get(), G_PRIORITY_DEFAULT,
                            m_cancellable.get(), answer, held());
}

void HttpExchange::answered(GAsyncResult* result) {
    GError* raw = nullptr;
    m_stream.reset(soup_session_send_finish(m_session.get(), result, &raw));
    const ErrorHandle error(raw);
    if (m_isOver) return;
    if (!m_stream) return end(errorOf(error.get()));
    noteArrival();
    const SoupStatus status = soup_message_get_status(m_message.get());
    if (SOUP_STATUS_IS_REDIRECTION(status)) return redirect();
    m_handler.status(status);
    if (!m_isOver) readOn();
}

// Only what keeps method and body is followed, and only on the same server.
void HttpExchange::redirect() {
    const auto status = soup_message_get_status(m_message.get());
    const char* place = soup_message_headers_get_one(
        soup_message_get_response_headers(m_message.get()), "Location");
    GUri* from = soup_message_get_uri(m_message.get());
    const UriHandle to(place == nullptr ? nullptr
                                        : g_uri_parse_relative(from, place, kUriFlags, nullptr));
    const bool keepsBody =
        status == SOUP_STATUS_TEMPORARY_REDIRECT || status == SOUP_STATUS_PERMANENT_REDIRECT;
    if (!to || !keepsBody || !isSameServer(from, to.get()) || ++m_redirects > kMostRedirects ||
        !prepare(to.get())) {
        return end(HttpError{HttpError::Kind::redirected});
    }
    m_stream.reset();
    send();
}

void HttpExchange::readOn() {
    const auto answer = [](GObject*, GAsyncResult* result, gpointer data) {
        taken(data)->received(result);
    };
    g_input_stream_read_async(m_stream.get(), m_chunk.data(), m_chunk.size(), kReadPriority,
                              m_cancellable.get(), answer, held());
}

void HttpExchange::received(GAsyncResult* result) {
    GError* raw = nullptr;
    const gssize count = g_input_stream_read_finish(m_stream.get(), result, &raw);
    const ErrorHandle error(raw);
    if (m_isOver) return;
    if (count < 0) return end(errorOf(error.get()));
    noteArrival();
    if (count > 0) return take({m_chunk.data(), static_cast<std::size_t>(count)});
    if (!m_lines.rest().empty()) m_handler.line(m_lines.rest());
    if (!m_isOver) end(std::nullopt);
}

void HttpExchange::take(std::string_view chunk) {
    const auto state = m_lines.add(chunk, [this](std::string_view line) {
        m_handler.line(line);
        return !m_isOver;
    });
    if (state == LineSplitter::State::lineTooLong) {
        return end(HttpError{HttpError::Kind::lineTooLong});
    }
    if (state == LineSplitter::State::good) readOn();
}

void HttpExchange::end(const std::optional<HttpError>& error) {
    cancel();
    m_handler.ended(error);
}

// Not at once: the transfer has not been handed out yet.
void HttpExchange::failSoon() {
    const auto fail = [](gpointer data) -> gboolean {
        const Self& self = *static_cast<Self*>(data);
        if (!self->m_isOver) self->end(HttpError{HttpError::Kind::badRequest});
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT, fail, held(), [](gpointer data) { taken(data); });
}

void HttpExchange::watchSilence(std::chrono::milliseconds wait) {
    m_timer = Glib::signal_timeout().connect(
        [this] {
            const Self self = shared_from_this();
            checkSilence();
            return false;
        },
        static_cast<unsigned>(wait.count()));
}

// The timer is not set anew with each arrival, of which there may be thousands a second.
void HttpExchange::checkSilence() {
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - m_lastArrival);
    if (passed >= m_limits.silence) return end(HttpError{HttpError::Kind::timedOut});
    watchSilence(m_limits.silence - passed);
}

}  // namespace corvel
