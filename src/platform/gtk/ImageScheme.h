#pragma once

#include "platform/RemoteImages.h"

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <string>

namespace corvel {

/// Answers what pages ask under the scheme `corvel-image:`: images from the web, fetched by the
/// program, since the web process has no network.
class ImageScheme {
public:
    using Permission = std::function<bool()>;

    explicit ImageScheme(Permission mayLoad);

    /// What an address begins with. Nobody can guess it, so that a style sheet, which may come from
    /// anywhere, cannot ask for images.
    const std::string& key() const { return m_key; }

    /// The context may outlive `scheme`; requests are refused from then on.
    static void registerIn(WebKitWebContext* context, const std::shared_ptr<ImageScheme>& scheme);

private:
    static void requested(WebKitURISchemeRequest* request, gpointer weak);
    void answer(WebKitURISchemeRequest* request);

    Permission m_mayLoad;
    std::string m_key;
    RemoteImages m_images;
};

}  // namespace corvel
