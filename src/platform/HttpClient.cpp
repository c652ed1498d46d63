#include "platform/HttpClient.h"

#include "platform/HttpExchange.h"

#include <utility>

namespace corvel {

HttpClient::HttpClient() : HttpClient(Limits()) {}

HttpClient::HttpClient(const Limits& limits) : m_limits(limits) {}

std::unique_ptr<HttpTransfer> HttpClient::post(HttpRequest request,
                                               HttpTransfer::Handler handler) const {
    if (!m_session) {
        m_session.reset(soup_session_new_with_options("user-agent", "qno-corvel", nullptr));
    }
    const auto exchange = std::make_shared<HttpExchange>(m_session.get(), m_limits,
                                                         std::move(request), std::move(handler));
    exchange->start();
    return std::make_unique<HttpTransfer>(exchange);
}

}  // namespace corvel
