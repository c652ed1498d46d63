#pragma once

#include "app/SyncEngineProtocol.h"
#include "model/PersistenceController.h"

namespace corvel {

/// The engine of a store that mirrors itself: nothing is left to do but to say how it stands.
class CloudKitSyncEngine : public SyncEngineProtocol {
public:
    /// `controller` must outlive the engine.
    explicit CloudKitSyncEngine(const PersistenceController& controller)
        : m_controller(controller) {}

    SyncState state() const override;

private:
    const PersistenceController& m_controller;
};

}  // namespace corvel
