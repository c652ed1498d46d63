#include "markdown/ScriptHash.h"

#include "platform/Handle.h"

#include <glib.h>

#include <array>

namespace corvel {

std::string scriptHashOf(std::string_view script) {
    const Handle<GChecksum, g_checksum_free> checksum(g_checksum_new(G_CHECKSUM_SHA256));
    g_checksum_update(checksum.get(), reinterpret_cast<const guchar*>(script.data()),
                      static_cast<gssize>(script.size()));
    std::array<guchar, 32> digest{};
    gsize length = digest.size();
    g_checksum_get_digest(checksum.get(), digest.data(), &length);
    const Handle<gchar, g_free> encoded(g_base64_encode(digest.data(), length));
    return std::string("sha256-") + encoded.get();
}

}  // namespace corvel
