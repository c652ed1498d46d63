#pragma once

#include "platform/RemoteImages.h"

#include <webkit/webkit.h>

#include <functional>
#include <memory>

namespace corvel {

/// Answers what pages ask under the scheme `corvel-image:`: images from the web, fetched by the
/// program, since the web process has no network.
class ImageScheme {
public:
    using Permission = std::function<bool()>;

    explicit ImageScheme(Permission mayLoad);

    /// The context may outlive `scheme`; requests are refused from then on.
    static void registerIn(WebKitWebContext* context, const std::shared_ptr<ImageScheme>& scheme);

private:
    static void requested(WebKitURISchemeRequest* request, gpointer weak);
    void answer(WebKitURISchemeRequest* request);

    Permission m_mayLoad;
    RemoteImages m_images;
};

}  // namespace corvel
