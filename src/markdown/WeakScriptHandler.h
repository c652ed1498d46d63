#pragma once

#include <memory>

namespace corvel {

class PreviewCoordinator;

/// What the web view holds as the receiver of the page's messages: it does not keep a closed
/// preview alive.
struct WeakScriptHandler {
    std::weak_ptr<PreviewCoordinator> coordinator;

    void operator()(double percent) const;
};

}  // namespace corvel
