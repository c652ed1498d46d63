#include "model/AttachmentFiles.h"

#include "platform/FileBytes.h"
#include "platform/FileDescriptor.h"
#include "platform/RegularFile.h"
#include "platform/StoreError.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

[[noreturn]] void throwErrno(const std::filesystem::path& path) {
    const int code = errno;
    const auto fault = code == ENOSPC || code == EDQUOT                   ? StoreFault::diskFull
                       : code == EROFS || code == EACCES || code == EPERM ? StoreFault::readOnly
                                                                          : StoreFault::failed;
    throw StoreError(fault, path.string() + ": " + std::strerror(code));
}

void writeAndSync(int file,
                  const std::vector<std::uint8_t>& data,
                  const std::filesystem::path& path) {
    const std::string_view bytes(reinterpret_cast<const char*>(data.data()), data.size());
    if (!writeAll(file, bytes) || ::fsync(file) != 0) throwErrno(path);
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
        if (!file.isOpen()) throwErrno(path);
        writeAndSync(file.get(), data, path);
        syncFolder(m_folder);
    } catch (const StoreError&) {
        std::filesystem::remove(path, ignored);
        throw;
    }
}

std::optional<std::vector<std::uint8_t>> AttachmentFiles::read(const Uuid& id) const {
    const auto opened = openRegularFile(pathOf(id));
    if (!opened) return std::nullopt;
    return readAll<std::vector<std::uint8_t>>(opened->file.get(), opened->size);
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
