#pragma once

#include "app/settings/Localisation.h"

namespace corvel {

/// Whether the library is mirrored to the user's other devices.
enum class SyncState { disabled, signedOut, syncing };

/// `mirrors`: a mirroring service keeps this store; `hasAccount`: somebody is signed in to it.
SyncState syncState(bool mirrors, bool hasAccount);

/// "off", "not signed in", "on".
const Text& nameOf(SyncState state);
/// One sentence for the settings.
const Text& explanationOf(SyncState state);

}  // namespace corvel
