#pragma once

#include "platform/StoreError.h"

#include <optional>

namespace corvel {

/// What the store said was wrong with `work`; none when it was done.
template <typename Work>
std::optional<StoreFault> faultOf(Work work) {
    try {
        work();
        return std::nullopt;
    } catch (const StoreError& error) {
        return error.fault();
    }
}

}  // namespace corvel
