#include "platform/GatheredLog.h"

#include "platform/StoreError.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace corvel::gatheredLog {

namespace {

// The most that SQLite itself writes at once, a largest page: the system's file system of SQLite
// cuts what is 128 KB and more.
constexpr int kCapacity = 64 * 1024;

// SQLite gives memory for it and, right behind, for the file that it stands for.
class LogFile : public sqlite3_file {
public:
    explicit LogFile(const sqlite3_io_methods* methods) : sqlite3_file{methods} {}

    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }

    int write(const void* data, int size, sqlite3_int64 offset) {
        const bool follows = m_size > 0 && offset == end() && size <= kCapacity - m_size;
        if (!follows && !holds(size, offset)) {
            if (const int result = flush(); result != SQLITE_OK) return result;
            if (size > kCapacity || !makeRoom())
                return real()->pMethods->xWrite(real(), data, size, offset);
            m_offset = offset;
        }
        std::memcpy(at(offset), data, static_cast<std::size_t>(size));
        m_size = std::max(m_size, static_cast<int>(offset - m_offset) + size);
        return SQLITE_OK;
    }

    // Without a write where it can be: what is in the library stays readable on a full disk.
    int read(void* data, int size, sqlite3_int64 offset) {
        if (holds(size, offset)) {
            std::memcpy(data, at(offset), static_cast<std::size_t>(size));
            return SQLITE_OK;
        }
        const bool isApart = offset >= end() || offset + size <= m_offset;
        if (const int result = isApart ? SQLITE_OK : flush(); result != SQLITE_OK) return result;
        return real()->pMethods->xRead(real(), data, size, offset);
    }

    // What finds no room stays for the next try: SQLite was told that it is written.
    int flush() {
        if (m_size == 0) return SQLITE_OK;
        const int result = real()->pMethods->xWrite(real(), m_gathered.get(), m_size, m_offset);
        if (result == SQLITE_OK) m_size = 0;
        return result;
    }

private:
    sqlite3_int64 end() const { return m_offset + m_size; }

    bool holds(int size, sqlite3_int64 offset) const {
        return m_size > 0 && offset >= m_offset && offset + size <= end();
    }

    std::byte* at(sqlite3_int64 offset) { return m_gathered.get() + (offset - m_offset); }

    bool makeRoom() {
        if (!m_gathered) m_gathered.reset(new (std::nothrow) std::byte[kCapacity]);
        return m_gathered != nullptr;
    }

    std::unique_ptr<std::byte[]> m_gathered;
    sqlite3_int64 m_offset = 0;
    int m_size = 0;
};
static_assert(alignof(LogFile) >= alignof(sqlite3_file) && sizeof(LogFile) % 8 == 0);

LogFile& logOf(sqlite3_file* file) {
    return *static_cast<LogFile*>(file);
}

int write(sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
    return logOf(file).write(data, size, offset);
}

int read(sqlite3_file* file, void* data, int size, sqlite3_int64 offset) {
    return logOf(file).read(data, size, offset);
}

int close(sqlite3_file* file) {
    LogFile& log = logOf(file);
    const int flushed = log.flush();
    const int closed = log.real()->pMethods->xClose(log.real());
    log.~LogFile();
    return flushed != SQLITE_OK ? flushed : closed;
}

// The real file's method, once nothing waits to be written.
template <auto kMethod, typename... Arguments>
int whenWritten(sqlite3_file* file, Arguments... arguments) {
    LogFile& log = logOf(file);
    if (const int result = log.flush(); result != SQLITE_OK) return result;
    return (log.real()->pMethods->*kMethod)(log.real(), arguments...);
}

template <auto kMethod, typename... Arguments>
int passedOn(sqlite3_file* file, Arguments... arguments) {
    LogFile& log = logOf(file);
    return (log.real()->pMethods->*kMethod)(log.real(), arguments...);
}

// Of version 1: a log has no shared memory of its own and is not mapped.
sqlite3_io_methods makeMethods() {
    sqlite3_io_methods methods{};
    methods.iVersion = 1;
    methods.xClose = close;
    methods.xWrite = write;
    methods.xRead = read;
    methods.xTruncate = whenWritten<&sqlite3_io_methods::xTruncate>;
    methods.xSync = whenWritten<&sqlite3_io_methods::xSync>;
    methods.xFileSize = whenWritten<&sqlite3_io_methods::xFileSize>;
    methods.xFileControl = passedOn<&sqlite3_io_methods::xFileControl>;
    methods.xLock = passedOn<&sqlite3_io_methods::xLock>;
    methods.xUnlock = passedOn<&sqlite3_io_methods::xUnlock>;
    methods.xCheckReservedLock = passedOn<&sqlite3_io_methods::xCheckReservedLock>;
    methods.xSectorSize = passedOn<&sqlite3_io_methods::xSectorSize>;
    methods.xDeviceCharacteristics = passedOn<&sqlite3_io_methods::xDeviceCharacteristics>;
    return methods;
}

// Asked for anew: tests put one before it that has no room.
sqlite3_vfs* realVfs() {
    return sqlite3_vfs_find(nullptr);
}

int open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* flagsOut) {
    if ((flags & SQLITE_OPEN_WAL) == 0)
        return realVfs()->xOpen(realVfs(), name, file, flags, flagsOut);
    static const sqlite3_io_methods kMethods = makeMethods();
    auto* log = new (file) LogFile(&kMethods);
    const int result = realVfs()->xOpen(realVfs(), name, log->real(), flags, flagsOut);
    if (result != SQLITE_OK) {
        log->~LogFile();
        file->pMethods = nullptr;
    }
    return result;
}

// The real file system's method.
template <auto kMethod, typename Result, typename... Arguments>
Result ofSystem(sqlite3_vfs*, Arguments... arguments) {
    return (realVfs()->*kMethod)(realVfs(), arguments...);
}

sqlite3_vfs makeVfs() {
    sqlite3_vfs vfs{};
    vfs.iVersion = 2;
    vfs.szOsFile = static_cast<int>(sizeof(LogFile)) + realVfs()->szOsFile;
    vfs.mxPathname = realVfs()->mxPathname;
    vfs.zName = "corvel-gathered-log";
    vfs.xOpen = open;
    vfs.xDelete = ofSystem<&sqlite3_vfs::xDelete>;
    vfs.xAccess = ofSystem<&sqlite3_vfs::xAccess>;
    vfs.xFullPathname = ofSystem<&sqlite3_vfs::xFullPathname>;
    vfs.xDlOpen = ofSystem<&sqlite3_vfs::xDlOpen>;
    vfs.xDlError = ofSystem<&sqlite3_vfs::xDlError>;
    vfs.xDlClose = ofSystem<&sqlite3_vfs::xDlClose>;
    vfs.xRandomness = ofSystem<&sqlite3_vfs::xRandomness>;
    vfs.xSleep = ofSystem<&sqlite3_vfs::xSleep>;
    vfs.xCurrentTime = ofSystem<&sqlite3_vfs::xCurrentTime>;
    vfs.xGetLastError = ofSystem<&sqlite3_vfs::xGetLastError>;
    vfs.xCurrentTimeInt64 = ofSystem<&sqlite3_vfs::xCurrentTimeInt64>;
    return vfs;
}

}  // namespace

const char* vfsName() {
    static sqlite3_vfs vfs = makeVfs();
    static const int kRegistered = sqlite3_vfs_register(&vfs, 0);
    if (kRegistered != SQLITE_OK)
        throw StoreError(StoreFault::failed, "SQLite does not take the file system of the log");
    return vfs.zName;
}

}  // namespace corvel::gatheredLog
