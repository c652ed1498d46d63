#include "ai/AIEndpoint.h"

#include "platform/Handle.h"

#include <gio/gio.h>

#include <string_view>

namespace corvel {

namespace {

const char* usualEndpointOf(AIProviderType type) {
    switch (type) {
        case AIProviderType::claude:
            return "https://api.anthropic.com";
        case AIProviderType::openai:
            return "https://api.openai.com";
        case AIProviderType::gemini:
            break;
    }
    return "https://generativelanguage.googleapis.com";
}

bool isThisMachine(const std::string& host) {
    if (host == "localhost") return true;
    const GObjectHandle<GInetAddress> address(g_inet_address_new_from_string(host.c_str()));
    return address && g_inet_address_get_is_loopback(address.get()) != FALSE;
}

bool isAccepted(const std::string& address) {
    using UriHandle = Handle<GUri, g_uri_unref>;
    const UriHandle uri(g_uri_parse(address.c_str(), G_URI_FLAGS_SCHEME_NORMALIZE, nullptr));
    if (!uri || g_uri_get_host(uri.get()) == nullptr) return false;
    // What the service's own path is put behind.
    if (g_uri_get_query(uri.get()) != nullptr || g_uri_get_fragment(uri.get()) != nullptr) {
        return false;
    }
    const std::string_view scheme = g_uri_get_scheme(uri.get());
    const std::string host = g_uri_get_host(uri.get());
    return !host.empty() && (scheme == "https" || (scheme == "http" && isThisMachine(host)));
}

}  // namespace

std::optional<std::string> endpointOf(AIProviderType type, const UserDefaults& defaults) {
    auto address = defaults.string(std::string("aiEndpoint_") + rawValue(type));
    if (!address) return usualEndpointOf(type);
    if (!isAccepted(*address)) return std::nullopt;
    while (address->ends_with('/')) {
        address->pop_back();
    }
    return address;
}

}  // namespace corvel
