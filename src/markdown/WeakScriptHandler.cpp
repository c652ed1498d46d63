#include "markdown/WeakScriptHandler.h"

#include "markdown/PreviewCoordinator.h"

namespace corvel {

void WeakScriptHandler::operator()(double percent) const {
    if (const auto target = coordinator.lock()) target->receiveScroll(percent);
}

}  // namespace corvel
