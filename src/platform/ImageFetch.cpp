#include "platform/ImageFetch.h"

#include "platform/ImageType.h"

#include <glibmm/main.h>

#include <string_view>
#include <utility>

namespace corvel {

namespace {

constexpr int kMostRedirects = 5;
constexpr auto kUriFlags = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

using UriHandle = Handle<GUri, g_uri_unref>;

bool isForTheWeb(GUri* uri) {
    const std::string_view scheme = g_uri_get_scheme(uri);
    const char* host = g_uri_get_host(uri);
    return (scheme == "http" || scheme == "https") && host != nullptr && *host != '\0';
}

}  // namespace

ImageFetch::ImageFetch(SoupSession* session, const RemoteImages::Limits& limits, Done done)
    : m_session(session)
    , m_limits(limits)
    , m_done(std::move(done))
    , m_cancellable(g_cancellable_new()) {}

ImageFetch::Self ImageFetch::taken(gpointer data) {
    const std::unique_ptr<Self> owner(static_cast<Self*>(data));
    return std::move(*owner);
}

void ImageFetch::start(const std::string& url) {
    m_timer = Glib::signal_timeout().connect(
        [this] {
            const auto self = shared_from_this();
            fail();
            return false;
        },
        static_cast<unsigned>(m_limits.time.count()));
    const UriHandle uri(g_uri_parse(url.c_str(), kUriFlags, nullptr));
    if (!uri) return fail();
    request(uri.get());
}

void ImageFetch::cancel() {
    m_done = {};
    m_timer.disconnect();
    g_cancellable_cancel(m_cancellable.get());
}

void ImageFetch::request(GUri* uri) {
    if (!isForTheWeb(uri)) return fail();
    m_message.reset(soup_message_new_from_uri("GET", uri));
    soup_message_set_flags(m_message.get(), SOUP_MESSAGE_NO_REDIRECT);
    soup_message_headers_append(soup_message_get_request_headers(m_message.get()), "Accept",
                                "image/*");
    const auto answer = [](GObject*, GAsyncResult* result, gpointer data) {
        taken(data)->answered(result);
    };
    soup_session_send_async(m_session, m_message.get(), G_PRIORITY_DEFAULT, m_cancellable.get(),
                            answer, held());
}

void ImageFetch::answered(GAsyncResult* result) {
    m_stream.reset(soup_session_send_finish(m_session, result, nullptr));
    if (!m_done) return;
    const SoupStatus status = soup_message_get_status(m_message.get());
    if (m_stream && SOUP_STATUS_IS_REDIRECTION(status)) return redirect();
    if (!m_stream || status != SOUP_STATUS_OK) return fail();
    readOn();
}

void ImageFetch::redirect() {
    const char* place = soup_message_headers_get_one(
        soup_message_get_response_headers(m_message.get()), "Location");
    if (place == nullptr || ++m_redirects > kMostRedirects) return fail();
    const UriHandle uri(
        g_uri_parse_relative(soup_message_get_uri(m_message.get()), place, kUriFlags, nullptr));
    if (!uri) return fail();
    request(uri.get());
}

void ImageFetch::readOn() {
    const auto answer = [](GObject*, GAsyncResult* result, gpointer data) {
        taken(data)->received(result);
    };
    g_input_stream_read_async(m_stream.get(), m_chunk.data(), m_chunk.size(), G_PRIORITY_DEFAULT,
                              m_cancellable.get(), answer, held());
}

void ImageFetch::received(GAsyncResult* result) {
    const gssize count = g_input_stream_read_finish(m_stream.get(), result, nullptr);
    if (!m_done) return;
    if (count < 0) return fail();
    if (count > 0) {
        m_bytes.append(m_chunk.data(), static_cast<std::size_t>(count));
        if (m_bytes.size() > m_limits.bytes) return fail();
        return readOn();
    }
    const auto type = imageTypeOf(m_bytes);
    if (type.empty()) return fail();
    finish(std::make_shared<const RemoteImage>(RemoteImage{std::string(type), std::move(m_bytes)}));
}

void ImageFetch::finish(const RemoteImages::Image& image) {
    m_timer.disconnect();
    const Done done = std::exchange(m_done, {});
    g_cancellable_cancel(m_cancellable.get());
    if (done) done(image);
}

}  // namespace corvel
