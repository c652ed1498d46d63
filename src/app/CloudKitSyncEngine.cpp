#include "app/CloudKitSyncEngine.h"

namespace corvel {

namespace {

// A store on this system is an SQLite file: no service mirrors it, and nobody signs in to one.
bool isMirroringOffered() {
    return false;
}

bool isSignedIn() {
    return false;
}

}  // namespace

SyncState CloudKitSyncEngine::state() const {
    return syncState(m_controller.iCloudEnabled() && isMirroringOffered(), isSignedIn());
}

}  // namespace corvel
