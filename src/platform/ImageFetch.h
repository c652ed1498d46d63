#pragma once

#include "platform/Handle.h"
#include "platform/RemoteImages.h"
#include "platform/ScopedConnection.h"

#include <libsoup/soup.h>

#include <array>
#include <functional>
#include <memory>
#include <string>

namespace corvel {

/// One transfer of an image. Each redirect is looked at before it is followed.
class ImageFetch : public std::enable_shared_from_this<ImageFetch> {
public:
    using Done = std::function<void(const RemoteImages::Image&)>;

    ImageFetch(SoupSession* session, const RemoteImages::Limits& limits, Done done);
    ImageFetch(const ImageFetch&) = delete;
    ImageFetch& operator=(const ImageFetch&) = delete;
    ~ImageFetch() = default;

    void start(const std::string& url);
    /// Ends the transfer without an answer.
    void cancel();

private:
    using Self = std::shared_ptr<ImageFetch>;

    void request(GUri* uri);
    void answered(GAsyncResult* result);
    void redirect();
    void readOn();
    void received(GAsyncResult* result);
    void finish(const RemoteImages::Image& image);
    void fail() { finish(nullptr); }

    Self* held() { return new Self(shared_from_this()); }
    static Self taken(gpointer data);

    SoupSession* m_session;
    RemoteImages::Limits m_limits;
    Done m_done;
    GObjectHandle<GCancellable> m_cancellable;
    GObjectHandle<SoupMessage> m_message;
    GObjectHandle<GInputStream> m_stream;
    std::array<char, 32768> m_chunk{};
    std::string m_bytes;
    int m_redirects = 0;
    ScopedConnection m_timer;
};

}  // namespace corvel
