#pragma once

#include "platform/Handle.h"
#include "platform/gtk/ContentFilter.h"
#include "platform/gtk/ImageScheme.h"
#include "platform/gtk/WebKitView.h"

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

namespace corvel {

/// Makes every web view of the program: closed rooms. A view shows the program's own pages, runs
/// only their own script, reaches no network and no file, and stays where it is. Behind each other
/// stand a content security policy, a content filter, and the refusal of every navigation. Images
/// from the web come through the program, under its own scheme.
class WebRoom {
public:
    /// Says, whenever a page asks for an image from the web, whether it may have it.
    using Permission = std::function<bool()>;

    /// Without `mayLoadImages` no page gets an image from the web.
    explicit WebRoom(Permission mayLoadImages = {});
    WebRoom(const WebRoom&) = delete;
    WebRoom& operator=(const WebRoom&) = delete;
    ~WebRoom();

    /// A view whose page may run the script with this hash ("sha256-…"). Its first page waits for
    /// the filter.
    std::unique_ptr<WebKitView> makeView(const std::string& scriptHash) const;

    /// What the addresses of images from the web begin with in its pages, behind the scheme.
    const std::string& imageKey() const { return m_images->key(); }

private:
    std::shared_ptr<ContentFilter> m_filter;
    std::shared_ptr<ImageScheme> m_images;
    GObjectHandle<WebKitWebContext> m_context;
    GObjectHandle<WebKitNetworkSession> m_session;
    GObjectHandle<WebKitSettings> m_settings;
};

}  // namespace corvel
