#pragma once

#include "app/SyncState.h"

namespace corvel {

/// What mirrors the library to the user's other devices.
class SyncEngineProtocol {
public:
    virtual ~SyncEngineProtocol() = default;

    virtual SyncState state() const = 0;
};

}  // namespace corvel
