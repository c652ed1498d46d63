#pragma once

#include "platform/Handle.h"
#include "platform/HttpTransfer.h"

#include <chrono>
#include <cstddef>
#include <memory>

typedef struct _SoupSession SoupSession;

namespace corvel {

/// Sends requests over http and https and hands out the answers line by line as they arrive.
/// Certificates are checked against the system's, proxies are those of the desktop's settings;
/// cookies are neither kept nor sent.
class HttpClient {
public:
    struct Limits {
        std::chrono::milliseconds silence{60'000};  ///< no byte for so long ends the transfer
        std::size_t lineBytes = std::size_t{16} * 1024 * 1024;
    };

    HttpClient();
    explicit HttpClient(const Limits& limits);

    /// Sends a POST. The transfer may outlive the client; it ends without a further call when the
    /// returned handle is destroyed, which any of the calls may do.
    [[nodiscard]] std::unique_ptr<HttpTransfer> post(HttpRequest request,
                                                     HttpTransfer::Handler handler) const;

private:
    Limits m_limits;
    mutable GObjectHandle<SoupSession> m_session;  // made with the first request
};

}  // namespace corvel
