#include "platform/FileStamp.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace corvel {

namespace {

constexpr std::int64_t kNanoseconds = 1'000'000'000;
constexpr std::int64_t kTickMicroseconds = 50'000;

std::int64_t nanosecondsOf(const struct statx_timestamp& time) {
    return time.tv_sec * kNanoseconds + time.tv_nsec;
}

std::optional<FileStamp> look(int descriptor, const char* path, int flags) {
    struct statx status {};
    if (::statx(descriptor, path, flags, STATX_BASIC_STATS | STATX_BTIME, &status) != 0 ||
        !S_ISREG(status.stx_mode)) {
        return std::nullopt;
    }
    FileStamp stamp;
    stamp.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    stamp.inode = status.stx_ino;
    stamp.size = status.stx_size;
    stamp.changedAt = nanosecondsOf(status.stx_ctime);
    if ((status.stx_mask & STATX_BTIME) != 0) stamp.bornAt = nanosecondsOf(status.stx_btime);
    return stamp;
}

}  // namespace

// Numbers of devices are given anew when a volume is mounted again; the time of birth is not.
bool FileStamp::isSameFile(const FileStamp& other) const {
    if (inode != other.inode) return false;
    return bornAt != 0 && other.bornAt != 0 ? bornAt == other.bornAt : device == other.device;
}

bool FileStamp::isSettled(Date now) const {
    const std::int64_t age = now.microseconds - changedAt / 1000;
    return age > kTickMicroseconds;
}

std::optional<FileStamp> stampOf(const std::filesystem::path& path) {
    return look(AT_FDCWD, path.c_str(), 0);
}

std::optional<FileStamp> stampOf(int descriptor) {
    return look(descriptor, "", AT_EMPTY_PATH);
}

}  // namespace corvel
