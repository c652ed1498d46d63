#include "export/OutsideLink.h"

#include "platform/Handle.h"

#include <glib.h>

#include <array>
#include <string_view>

namespace corvel {

namespace {

using Uri = Handle<GUri, g_uri_unref>;

bool isEscape(std::string_view text) {
    return text.size() >= 3 && g_ascii_isxdigit(text[1]) && g_ascii_isxdigit(text[2]);
}

bool isAddressCharacter(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 0x80 || g_ascii_isalnum(character) ||
           std::string_view("-._~:/?#@!$&'()*+,;=").find(character) != std::string_view::npos;
}

std::string withEscapes(std::string_view address) {
    std::string escaped;
    const std::size_t fragment = address.find('#');
    for (std::size_t i = 0; i < address.size(); ++i) {
        const char character = address[i];
        const bool isSecondFragment = character == '#' && i != fragment;
        if (character == '%' ? isEscape(address.substr(i))
                             : isAddressCharacter(character) && !isSecondFragment) {
            escaped += character;
            continue;
        }
        std::array<char, 4> code{};
        g_snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(character));
        escaped += code.data();
    }
    return escaped;
}

}  // namespace

std::optional<std::string> outsideLink(const std::string& address) {
    std::string escaped = withEscapes(address);
    const Uri uri(g_uri_parse(escaped.c_str(), G_URI_FLAGS_ENCODED, nullptr));
    if (!uri) return std::nullopt;
    const std::string_view scheme = g_uri_get_scheme(uri.get());
    if (scheme == "mailto") return escaped;
    const char* host = g_uri_get_host(uri.get());
    const bool isWeb = scheme == "http" || scheme == "https";
    if (!isWeb || host == nullptr || *host == '\0') return std::nullopt;
    return escaped;
}

}  // namespace corvel
