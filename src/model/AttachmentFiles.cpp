#include "model/AttachmentFiles.h"

#include "platform/StoreError.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <utility>

namespace corvel {

namespace {

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    int get() const { return m_descriptor; }

private:
    int m_descriptor;
};

[[noreturn]] void throwErrno(const std::filesystem::path& path) {
    const int code = errno;
    const auto fault = code == ENOSPC || code == EDQUOT                   ? StoreFault::diskFull
                       : code == EROFS || code == EACCES || code == EPERM ? StoreFault::readOnly
                                                                          : StoreFault::failed;
    throw StoreError(fault, path.string() + ": " + std::strerror(code));
}

void writeAll(int descriptor,
              const std::vector<std::uint8_t>& data,
              const std::filesystem::path& path) {
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t count = ::write(descriptor, data.data() + done, data.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throwErrno(path);
        done += static_cast<std::size_t>(count);
    }
    if (::fsync(descriptor) != 0) throwErrno(path);
}

void syncFolder(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0) ::fsync(descriptor.get());
}

}  // namespace

AttachmentFiles::AttachmentFiles(std::filesystem::path folder) : m_folder(std::move(folder)) {}

std::filesystem::path AttachmentFiles::pathOf(const Uuid& id) const {
    return m_folder / id.toString();
}

void AttachmentFiles::write(const Uuid& id, const std::vector<std::uint8_t>& data) const {
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    const auto path = pathOf(id);
    // A backup may have a link to an older file of this name, which has to stay as it is.
    std::filesystem::remove(path, ignored);
    try {
        const FileDescriptor file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (file.get() < 0) throwErrno(path);
        writeAll(file.get(), data, path);
        syncFolder(m_folder);
    } catch (const StoreError&) {
        std::filesystem::remove(path, ignored);
        throw;
    }
}

std::optional<std::vector<std::uint8_t>> AttachmentFiles::read(const Uuid& id) const {
    std::ifstream file(pathOf(id), std::ios::binary);
    if (!file) return std::nullopt;
    std::vector<std::uint8_t> data{std::istreambuf_iterator<char>(file), {}};
    if (file.bad()) return std::nullopt;
    return data;
}

void AttachmentFiles::remove(const Uuid& id) const {
    std::error_code ignored;
    std::filesystem::remove(pathOf(id), ignored);
}

void AttachmentFiles::sweep(const std::unordered_set<Uuid>& named) const {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder, error)) {
        const auto id = Uuid::parse(entry.path().filename().string());
        if (id && !named.contains(*id)) remove(*id);
    }
}

}  // namespace corvel
