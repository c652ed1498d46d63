#pragma once

#include <filesystem>

namespace corvel {

/// A library that takes the place of the present one at the next start. It waits as a complete,
/// synced store in a folder beside; what it needs of attachments lies with the others already.
namespace pendingRestore {

/// Where a store is made ready, in the folder of the library.
std::filesystem::path preparing(const std::filesystem::path& library);
/// Says that the store that was made ready is to be taken. Throws StoreError.
void commit(const std::filesystem::path& library);

/// Takes what was committed; called with the library locked and not open. A start that is killed
/// here is finished by the next one. Leftovers of a preparation that was not committed go. Throws
/// StoreError.
void finish(const std::filesystem::path& library);

}  // namespace pendingRestore
}  // namespace corvel
