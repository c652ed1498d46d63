#pragma once

#include "ai/AIProviderService.h"

#include <sigc++/signal.h>

#include <functional>
#include <memory>

namespace corvel {

/// Makes services ready to be asked. Reading a key may have to wait for the user to unlock the
/// password store, so answers come later: once, on the main loop.
class AIProviderSource {
public:
    using Made = std::function<void(std::unique_ptr<AIProviderService> provider)>;

    virtual ~AIProviderSource() = default;

    /// With the model chosen in the preferences. Gives null when there is no key.
    virtual void makeProvider(AIProviderType type, Made done) = 0;
    /// Whether a key is stored; the user is never asked for anything.
    virtual void hasKey(AIProviderType type, std::function<void(bool isThere)> done) = 0;
    /// Emitted after a key was saved or deleted: services made before hold the old one.
    virtual sigc::signal<void(AIProviderType)>& signalKeyChanged() = 0;
};

}  // namespace corvel
