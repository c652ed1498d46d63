#include "platform/RemoteImages.h"

#include "platform/ImageFetch.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

// Each has its time limit; more than these wait.
constexpr int kConnections = 16;
constexpr int kConnectionsToOneHost = 4;

// No cookie jar, no cache on disk, no password is ever asked for or sent.
SoupSession* makeSession() {
    return soup_session_new_with_options("max-conns", kConnections, "max-conns-per-host",
                                         kConnectionsToOneHost, "user-agent", "qno-corvel",
                                         nullptr);
}

}  // namespace

RemoteImages::RemoteImages() : RemoteImages(Limits()) {}

RemoteImages::RemoteImages(const Limits& limits) : m_limits(limits), m_session(makeSession()) {}

RemoteImages::~RemoteImages() {
    for (const auto& [url, fetch] : m_fetches) {
        fetch->cancel();
    }
}

void RemoteImages::fetch(const std::string& url, Done done) {
    if (const Kept* kept = find(url)) return done(kept->image);
    auto& waiting = m_waiting[url];
    waiting.push_back(std::move(done));
    if (waiting.size() > 1) return;
    const auto fetch = std::make_shared<ImageFetch>(
        m_session.get(), m_limits, [this, url](const Image& image) { arrived(url, image); });
    m_fetches[url] = fetch;
    fetch->start(url);
}

const RemoteImages::Kept* RemoteImages::find(const std::string& url) {
    const auto found = std::ranges::find(m_kept, url, &Kept::url);
    if (found == m_kept.end()) return nullptr;
    const auto age = std::chrono::steady_clock::now() - found->since;
    if (!found->image && age > m_limits.failure) {
        m_kept.erase(found);
        return nullptr;
    }
    m_kept.splice(m_kept.begin(), m_kept, found);
    return &m_kept.front();
}

void RemoteImages::arrived(const std::string& url, const Image& image) {
    m_kept.push_front({url, image, std::chrono::steady_clock::now()});
    trim();
    const auto waiting = std::move(m_waiting[url]);
    m_waiting.erase(url);
    m_fetches.erase(url);
    for (const auto& done : waiting) {
        done(image);
    }
}

void RemoteImages::trim() {
    constexpr std::size_t kEntry = 256;  // what a failure costs, about
    std::size_t size = 0;
    const auto fits = [&](const Kept& kept) {
        size += kEntry + kept.url.size() + (kept.image ? kept.image->bytes.size() : 0);
        return size <= m_limits.keptBytes;
    };
    m_kept.erase(std::ranges::find_if_not(m_kept, fits), m_kept.end());
}

}  // namespace corvel
