#pragma once

#include "platform/HttpClient.h"

#include <optional>
#include <string>

namespace corvel {

/// How a service is reached.
struct AIConnection {
    const HttpClient& http;
    std::optional<std::string> endpoint;  ///< as of `endpointOf`

    /// The address of `path` there; empty, which no request is sent to, without an end point.
    std::string url(const std::string& path) const { return endpoint ? *endpoint + path : ""; }
};

}  // namespace corvel
