#pragma once

#include "platform/HttpError.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvel {

class HttpExchange;

struct HttpRequest {
    std::string url;
    std::vector<std::pair<std::string, std::string>> headers;  ///< beside Content-Type
    std::string contentType;
    std::string body;
};

/// Owns a transfer that is under way: destroyed, it drops the connection and nothing more is
/// called.
class HttpTransfer {
public:
    /// All are called on the main loop, never before the transfer has been handed out.
    struct Handler {
        std::function<void(unsigned status)> status;  ///< once, before any line
        std::function<void(std::string_view line)> line;
        std::function<void(const std::optional<HttpError>& error)> ended;  ///< once, the last call
    };

    explicit HttpTransfer(std::shared_ptr<HttpExchange> exchange);
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;
    ~HttpTransfer();

private:
    std::shared_ptr<HttpExchange> m_exchange;
};

}  // namespace corvel
