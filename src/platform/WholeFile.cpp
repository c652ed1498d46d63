#include "platform/WholeFile.h"

#include "platform/FileDescriptor.h"
#include "platform/Uuid.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

using Path = std::filesystem::path;

constexpr int kMostLinks = 40;  // as many as the system follows

[[noreturn]] void fail(const Path& path) {
    throw FileError::fromCode(errno, path);
}

void refuseOtherThanFile(const struct stat& status, const Path& path) {
    if (S_ISDIR(status.st_mode)) throw FileError::fromCode(EISDIR, path);
    if (!S_ISREG(status.st_mode)) throw FileError::fromCode(ENXIO, path);
}

std::string readAll(int file, std::size_t expected, std::size_t most, const Path& path) {
    constexpr std::size_t kAtOnce = 1024 * 1024;
    std::string bytes(expected + 1, '\0');  // one more tells the end without another round
    std::size_t used = 0;
    while (true) {
        if (used == bytes.size()) bytes.resize(used + kAtOnce);
        const ssize_t count = ::read(file, bytes.data() + used, bytes.size() - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(path);
        if (count == 0) break;
        used += static_cast<std::size_t>(count);
        if (used > most) throw FileError(FileFault::tooLarge, path, "grows beyond the limit");
    }
    bytes.resize(used);
    return bytes;
}

void writeAll(int file, std::string_view bytes, const Path& path) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(path);
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void sync(int file, const Path& path) {
    if (::fsync(file) != 0) fail(path);
}

// Not every file system can; the renamed file is whole either way.
void syncFolder(const Path& folder) {
    const FileDescriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (open.isOpen()) ::fsync(open.get());
}

/// Where a path leads when its last link, or what that leads to, need not exist.
Path targetOf(Path path) {
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const auto next = std::filesystem::read_symlink(path, error);
        if (error) return path;
        path = next.is_absolute() ? next : path.parent_path() / next;
    }
    throw FileError::fromCode(ELOOP, path);
}

// Of an access list nothing may get lost; the other attributes are kept where that is possible.
bool copyAttributes(int from, int to) {
    std::string names(16 * 1024, '\0');
    const ssize_t length = ::flistxattr(from, names.data(), names.size());
    if (length <= 0) return true;
    names.resize(static_cast<std::size_t>(length));
    for (std::size_t at = 0; at < names.size();) {
        const char* name = names.data() + at;
        at += std::string_view(name).size() + 1;
        std::string value(64 * 1024, '\0');
        const ssize_t size = ::fgetxattr(from, name, value.data(), value.size());
        const bool isCopied = size >= 0 && ::fsetxattr(to, name, value.data(),
                                                       static_cast<std::size_t>(size), 0) == 0;
        if (!isCopied && std::string_view(name).starts_with("system.posix_acl")) return false;
    }
    return true;
}

/// A file being written beside another; removed again unless it took that one's place.
class Beside {
public:
    explicit Beside(const Path& target)
        : m_path(target.parent_path() / (".corvel-" + Uuid::random().toString())) {}
    Beside(const Beside&) = delete;
    Beside& operator=(const Beside&) = delete;
    ~Beside() {
        if (m_file.isOpen()) ::unlink(m_path.c_str());
    }

    bool create(mode_t mode) {
        m_file = FileDescriptor(
            ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
        return m_file.isOpen();
    }

    bool takeAfter(const struct stat& status, int original) {
        struct stat own {};
        if (::fstat(m_file.get(), &own) != 0) return false;
        const bool isOwned = own.st_uid == status.st_uid && own.st_gid == status.st_gid;
        if (!isOwned && ::fchown(m_file.get(), status.st_uid, status.st_gid) != 0) return false;
        // The mode after the owner, who takes some of its bits away.
        return ::fchmod(m_file.get(), status.st_mode & 07777U) == 0 &&
               copyAttributes(original, m_file.get());
    }

    void write(const std::string& bytes) {
        writeAll(m_file.get(), bytes, m_path);
        sync(m_file.get(), m_path);
    }

    void rename(const Path& target) {
        if (std::rename(m_path.c_str(), target.c_str()) != 0) fail(target);
        m_file = FileDescriptor();
        syncFolder(target.parent_path());
    }

private:
    Path m_path;
    FileDescriptor m_file;
};

/// One writing of one file.
class Replacement {
public:
    Replacement(Path target, const std::string& bytes, const std::optional<FileStamp>& expected)
        : m_target(std::move(target)), m_bytes(bytes), m_expected(expected) {}

    FileStamp run() {
        look();
        if (!m_exists) {
            makeNew();
        } else if (m_status.st_nlink > 1 || !writeBeside()) {
            writeInPlace();
        }
        const auto stamp = stampOf(m_target);
        if (!stamp) throw FileError::fromCode(ENOENT, m_target);
        return *stamp;
    }

private:
    void look() {
        m_exists = ::stat(m_target.c_str(), &m_status) == 0;
        if (!m_exists && (errno != ENOENT || m_expected)) fail(m_target);
        if (!m_exists) return;
        refuseOtherThanFile(m_status, m_target);
        if (::faccessat(AT_FDCWD, m_target.c_str(), W_OK, AT_EACCESS) != 0) fail(m_target);
        checkExpected();
    }

    void checkExpected() const {
        if (!m_expected) return;
        const auto stamp = stampOf(m_target);
        if (!stamp) throw FileError::fromCode(ENOENT, m_target);
        if (*stamp != *m_expected)
            throw FileError(FileFault::changed, m_target, "was changed meanwhile");
    }

    void makeNew() {
        Beside beside(m_target);
        if (!beside.create(0666)) fail(m_target);
        beside.write(m_bytes);
        beside.rename(m_target);
    }

    // False, with nothing changed, where the file can only be written in place.
    bool writeBeside() {
        const auto original = openForReading(m_target);
        Beside beside(m_target);
        if (!beside.create(0600)) {
            if (errno == EACCES || errno == EPERM) return false;
            fail(m_target);
        }
        if (!original.isOpen() || !beside.takeAfter(m_status, original.get())) return false;
        beside.write(m_bytes);
        checkExpected();  // writing took a while
        beside.rename(m_target);
        return true;
    }

    void writeInPlace() {
        const FileDescriptor file(
            ::open(m_target.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW));
        if (!file.isOpen()) fail(m_target);
        const auto size = static_cast<off_t>(m_bytes.size());
        const int code = size > m_status.st_size ? ::posix_fallocate(file.get(), 0, size) : 0;
        if (code != 0) {
            // What was made longer before the room ran out goes back.
            if (::ftruncate(file.get(), m_status.st_size) != 0) fail(m_target);
            throw FileError::fromCode(code, m_target);
        }
        writeAll(file.get(), m_bytes, m_target);
        if (::ftruncate(file.get(), size) != 0) fail(m_target);
        sync(file.get(), m_target);
    }

    Path m_target;
    const std::string& m_bytes;
    const std::optional<FileStamp>& m_expected;
    struct stat m_status {};
    bool m_exists = false;
};

}  // namespace

WholeFile readWholeFile(const Path& path, std::size_t most) {
    const auto file = openForReading(path);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) fail(path);
    refuseOtherThanFile(status, path);
    const auto stamp = stampOf(file.get());
    if (!stamp) fail(path);
    if (stamp->size > most) throw FileError(FileFault::tooLarge, path, "is too large");
    return {readAll(file.get(), static_cast<std::size_t>(stamp->size), most, path),
            *stamp,
            {status.st_mtim.tv_sec * 1'000'000 + status.st_mtim.tv_nsec / 1000}};
}

FileStamp writeWholeFile(const Path& path,
                         const std::string& bytes,
                         const std::optional<FileStamp>& expected) {
    return Replacement(targetOf(path), bytes, expected).run();
}

}  // namespace corvel
