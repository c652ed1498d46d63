#pragma once

#include "platform/RemoteImages.h"

#include <giomm/cancellable.h>
#include <sigc++/connection.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace corvel {

/// Brings the web's images into one page as `data:` URLs: all are fetched at once, and after a time
/// limit the page goes without those that did not come. Keeps itself alive until it is done.
class RemoteEmbedding : public std::enable_shared_from_this<RemoteEmbedding> {
public:
    using Done = std::function<void(std::string html)>;

    /// Calls `done` once, on the main loop, never before this function returns; not at all once
    /// `cancellable` was cancelled. `images` must live until then.
    static void start(std::string html,
                      RemoteImages& images,
                      const Glib::RefPtr<Gio::Cancellable>& cancellable,
                      Done done);

private:
    RemoteEmbedding(std::string html, const Glib::RefPtr<Gio::Cancellable>& cancellable, Done done);
    void fetchAll(RemoteImages& images);
    void arrived(const std::string& address, const RemoteImages::Image& image);
    void finish();

    std::string m_html;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;
    Done m_done;
    std::map<std::string, RemoteImages::Image, std::less<>> m_images;  // by address as written
    std::size_t m_missing = 0;
    sigc::connection m_patience;
};

}  // namespace corvel
