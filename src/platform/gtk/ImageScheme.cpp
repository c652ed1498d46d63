#include "platform/gtk/ImageScheme.h"

#include "platform/Handle.h"
#include "platform/Uuid.h"

#include <gio/gio.h>

#include <string_view>
#include <utility>

namespace corvel {

namespace {

constexpr const char* kScheme = "corvel-image";

void refuse(WebKitURISchemeRequest* request) {
    const Handle<GError, g_error_free> error(
        g_error_new_literal(G_IO_ERROR, G_IO_ERROR_NOT_FOUND, "no such image"));
    webkit_uri_scheme_request_finish_error(request, error.get());
}

void hand(WebKitURISchemeRequest* request, const RemoteImages::Image& image) {
    if (!image) return refuse(request);
    // The stream keeps the image, not a copy of it.
    auto owner = std::make_unique<RemoteImages::Image>(image);
    const Handle<GBytes, g_bytes_unref> bytes(g_bytes_new_with_free_func(
        image->bytes.data(), image->bytes.size(),
        [](gpointer data) { delete static_cast<RemoteImages::Image*>(data); }, owner.release()));
    const GObjectHandle<GInputStream> stream(g_memory_input_stream_new_from_bytes(bytes.get()));
    webkit_uri_scheme_request_finish(
        request, stream.get(), static_cast<gint64>(image->bytes.size()), image->mimeType.c_str());
}

}  // namespace

ImageScheme::ImageScheme(Permission mayLoad)
    : m_mayLoad(std::move(mayLoad)), m_key(Uuid::random().toString() + "/") {}

void ImageScheme::registerIn(WebKitWebContext* context,
                             const std::shared_ptr<ImageScheme>& scheme) {
    auto weak = std::make_unique<std::weak_ptr<ImageScheme>>(scheme);
    webkit_web_context_register_uri_scheme(
        context, kScheme, &ImageScheme::requested, weak.release(),
        [](gpointer data) { delete static_cast<std::weak_ptr<ImageScheme>*>(data); });
}

void ImageScheme::requested(WebKitURISchemeRequest* request, gpointer weak) {
    if (const auto scheme = static_cast<std::weak_ptr<ImageScheme>*>(weak)->lock()) {
        scheme->answer(request);
    } else {
        refuse(request);
    }
}

void ImageScheme::answer(WebKitURISchemeRequest* request) {
    std::string_view address = webkit_uri_scheme_request_get_uri(request);
    address.remove_prefix(std::string_view(kScheme).size() + 1);
    if (!address.starts_with(m_key) || !m_mayLoad || !m_mayLoad()) return refuse(request);
    address.remove_prefix(m_key.size());
    const std::shared_ptr<WebKitURISchemeRequest> held(
        WEBKIT_URI_SCHEME_REQUEST(g_object_ref(request)), g_object_unref);
    m_images.fetch(std::string(address),
                   [held](const RemoteImages::Image& image) { hand(held.get(), image); });
}

}  // namespace corvel
