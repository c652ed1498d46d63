#include "model/PendingRestore.h"

#include "model/StoreFiles.h"
#include "platform/FileDescriptor.h"
#include "platform/StoreError.h"

#include <fcntl.h>
#include <unistd.h>

namespace corvel::pendingRestore {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPreparing = "qnoCorvel_restore.partial";
constexpr const char* kReady = "qnoCorvel_restore";

void syncFolder(const fs::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) ::fsync(descriptor.get());
}

void moveTo(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) throw StoreError(StoreFault::failed, to.string() + ": " + error.message());
}

}  // namespace

fs::path preparing(const fs::path& library) {
    return library / kPreparing;
}

void commit(const fs::path& library) {
    syncFolder(library / kPreparing);
    moveTo(library / kPreparing, library / kReady);
    syncFolder(library);
}

// Only forward: the library that goes was kept as a backup before anything was committed.
void finish(const fs::path& library) {
    std::error_code ignored;
    const auto ready = library / kReady / storeFiles::kStore;
    const auto store = library / storeFiles::kStore;
    if (fs::is_regular_file(ready, ignored)) {
        // The old store's log must not be read into the new one.
        for (const char* ending : {"-wal", "-shm"})
            fs::remove(store.string() + ending, ignored);
        syncFolder(library);
        moveTo(ready, store);
        syncFolder(library);
    }
    fs::remove_all(library / kReady, ignored);
    fs::remove_all(library / kPreparing, ignored);
}

}  // namespace corvel::pendingRestore
