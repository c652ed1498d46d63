#pragma once

namespace corvel {

/// Remembers the calling thread as the main thread. The first `checkMainThread` does it too.
void claimMainThread();

/// Stops the program when called from another thread than the main one: the store and the view
/// models have no locks.
void checkMainThread();

}  // namespace corvel
