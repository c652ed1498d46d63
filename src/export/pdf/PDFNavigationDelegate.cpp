#include "export/pdf/PDFNavigationDelegate.h"

#include <utility>

namespace corvel {

PDFNavigationDelegate::PDFNavigationDelegate(WebView& view, Continuation continuation)
    : m_continuation(std::move(continuation)) {
    m_loaded = view.signalLoaded().connect([this] { resume(std::nullopt); });
    m_failed = view.signalFailed().connect([this] { resume("The page could not be loaded"); });
}

void PDFNavigationDelegate::resume(const std::optional<std::string>& error) {
    if (const auto continuation = std::exchange(m_continuation, {})) continuation(error);
}

}  // namespace corvel
