#pragma once

#include <string>

namespace corvel {

/// Why a transfer ended before its end.
struct HttpError {
    enum class Kind {
        badRequest,   ///< an address or a header that cannot be sent
        unreachable,  ///< no connection, or it broke; `detail` says more
        certificate,  ///< the server could not prove who it is
        redirected,   ///< the server names another host, which is not asked
        notHttp,      ///< the answer is no HTTP
        timedOut,     ///< nothing came for as long as allowed
        lineTooLong,
    };

    Kind kind;
    std::string detail = {};  ///< the library's own words, may be empty
};

}  // namespace corvel
