#include "platform/HttpTransfer.h"

#include "platform/HttpExchange.h"

namespace corvel {

HttpTransfer::HttpTransfer(std::shared_ptr<HttpExchange> exchange)
    : m_exchange(std::move(exchange)) {}

HttpTransfer::~HttpTransfer() {
    m_exchange->cancel();
}

}  // namespace corvel
