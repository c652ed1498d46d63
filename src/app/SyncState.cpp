#include "app/SyncState.h"

#include "app/texts/SettingsTexts.h"

namespace corvel {

SyncState syncState(bool mirrors, bool hasAccount) {
    if (!mirrors) return SyncState::disabled;
    return hasAccount ? SyncState::syncing : SyncState::signedOut;
}

const Text& nameOf(SyncState state) {
    switch (state) {
        case SyncState::signedOut:
            return texts::syncWaiting;
        case SyncState::syncing:
            return texts::syncOn;
        case SyncState::disabled:
            break;
    }
    return texts::syncOff;
}

const Text& explanationOf(SyncState state) {
    switch (state) {
        case SyncState::signedOut:
            return texts::syncSignedOut;
        case SyncState::syncing:
            return texts::syncActive;
        case SyncState::disabled:
            break;
    }
    return texts::syncDisabled;
}

}  // namespace corvel
