#include "support/FullDisk.h"

#include <sqlite3.h>

#include <map>

namespace corvel {

namespace {

bool diskIsFull = false;
sqlite3_vfs* realVfs = nullptr;
std::map<const sqlite3_io_methods*, sqlite3_io_methods> patchedMethods;
std::map<const sqlite3_io_methods*, const sqlite3_io_methods*> originals;

int writeUnlessFull(sqlite3_file* file, const void* data, int amount, sqlite3_int64 offset) {
    if (diskIsFull) return SQLITE_FULL;
    return originals.at(file->pMethods)->xWrite(file, data, amount, offset);
}

// The file stays the system's own; only its table of methods is exchanged for a copy with another
// write.
int openPatched(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* outFlags) {
    const int result = realVfs->xOpen(realVfs, name, file, flags, outFlags);
    if (result != SQLITE_OK || file->pMethods == nullptr) return result;
    const auto* original = file->pMethods;
    auto& patched = patchedMethods[original];
    patched = *original;
    patched.xWrite = writeUnlessFull;
    originals[&patched] = original;
    file->pMethods = &patched;
    return result;
}

}  // namespace

void FullDisk::makePossible() {
    static sqlite3_vfs vfs;
    if (realVfs != nullptr) return;
    realVfs = sqlite3_vfs_find(nullptr);
    vfs = *realVfs;
    vfs.zName = "full-disk";
    vfs.xOpen = openPatched;
    sqlite3_vfs_register(&vfs, 1);
}

FullDisk::FullDisk() {
    diskIsFull = true;
}

FullDisk::~FullDisk() {
    diskIsFull = false;
}

}  // namespace corvel
