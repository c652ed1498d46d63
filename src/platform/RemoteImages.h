#pragma once

#include "platform/Handle.h"

#include <glib.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

typedef struct _SoupSession SoupSession;

namespace corvel {

class ImageFetch;

/// An image from the web.
struct RemoteImage {
    std::string mimeType;  ///< by its bytes, not by what its sender says
    std::string bytes;
};

/// Fetches images over http and https: without cookies, referrer or passwords, to limits of size
/// and time. Keeps the last ones in memory, and for a while what could not be fetched.
class RemoteImages {
public:
    struct Limits {
        std::size_t bytes = std::size_t{20} * 1024 * 1024;
        std::chrono::milliseconds time{20'000};
        std::size_t keptBytes = std::size_t{64} * 1024 * 1024;
        std::chrono::milliseconds failure{60'000};  ///< no second try before that
    };
    using Image = std::shared_ptr<const RemoteImage>;
    /// Gets null when there is no such image.
    using Done = std::function<void(const Image&)>;

    RemoteImages();
    explicit RemoteImages(const Limits& limits);
    RemoteImages(const RemoteImages&) = delete;
    RemoteImages& operator=(const RemoteImages&) = delete;
    /// Ends every transfer; their `done` are not called.
    ~RemoteImages();

    /// Calls `done` once, on the main loop, perhaps before this returns.
    void fetch(const std::string& url, Done done);

private:
    struct Kept {
        std::string url;
        Image image;  // null: it could not be fetched
        std::chrono::steady_clock::time_point since;
    };

    const Kept* find(const std::string& url);
    void arrived(const std::string& url, const Image& image);
    void trim();

    Limits m_limits;
    GObjectHandle<SoupSession> m_session;
    std::list<Kept> m_kept;  // the last used first
    std::map<std::string, std::vector<Done>, std::less<>> m_waiting;
    std::map<std::string, std::shared_ptr<ImageFetch>, std::less<>> m_fetches;
};

}  // namespace corvel
