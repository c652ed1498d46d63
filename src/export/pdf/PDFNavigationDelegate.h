#pragma once

#include "platform/ScopedConnection.h"
#include "platform/WebView.h"

#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// Waits for a page to be loaded and resumes what waits for it exactly once.
class PDFNavigationDelegate {
public:
    /// Called with an error's description, or with none.
    using Continuation = std::function<void(const std::optional<std::string>& error)>;

    PDFNavigationDelegate(WebView& view, Continuation continuation);

private:
    void resume(const std::optional<std::string>& error);

    Continuation m_continuation;
    ScopedConnection m_loaded;
    ScopedConnection m_failed;
};

}  // namespace corvel
