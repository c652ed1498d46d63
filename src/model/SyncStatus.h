#pragma once

#include <cstdint>

namespace corvel {

/// State of a note towards the mirrored library; stored as a 16-bit integer.
enum class SyncStatus : std::int16_t { synced = 0, pending = 1, conflict = 2 };

/// A stored value outside the known ones counts as pending.
constexpr SyncStatus syncStatusFromStored(std::int64_t stored) {
    return stored >= 0 && stored < 3 ? static_cast<SyncStatus>(stored) : SyncStatus::pending;
}

}  // namespace corvel
