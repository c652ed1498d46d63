#include "platform/RegularFile.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace corvel {

namespace {

class FileDescriptor {
public:
    explicit FileDescriptor(int number) : m_number(number) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (m_number >= 0) close(m_number);
    }
    int get() const { return m_number; }

private:
    int m_number;
};

std::optional<std::string> readAll(int file, std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t count = read(file, bytes.data() + filled, size - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

}  // namespace

std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most) {
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode) || std::cmp_greater(status.st_size, most)) return std::nullopt;
    return readAll(file.get(), static_cast<std::size_t>(status.st_size));
}

bool replaceFile(const std::filesystem::path& path, const std::string& bytes) {
    constexpr int kMode = 0644;
    const auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                          G_FILE_SET_CONTENTS_DURABLE);
    return g_file_set_contents_full(path.c_str(), bytes.data(), static_cast<gssize>(bytes.size()),
                                    flags, kMode, nullptr) != FALSE;
}

}  // namespace corvel
