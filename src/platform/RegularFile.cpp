#include "platform/RegularFile.h"

#include "platform/FileBytes.h"

#include <glib.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace corvel {

std::optional<RegularFile> openRegularFile(const std::filesystem::path& path) {
    auto file = openForReading(path);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) return std::nullopt;
    if (S_ISREG(status.st_mode))
        return RegularFile{std::move(file), static_cast<std::size_t>(status.st_size)};
    errno = EINVAL;
    return std::nullopt;
}

std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most) {
    const auto opened = openRegularFile(path);
    if (!opened || opened->size > most) return std::nullopt;
    return readAll<std::string>(opened->file.get(), opened->size);
}

bool replaceFile(const std::filesystem::path& path, const std::string& bytes) {
    constexpr int kMode = 0644;
    const auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                          G_FILE_SET_CONTENTS_DURABLE);
    return g_file_set_contents_full(path.c_str(), bytes.data(), static_cast<gssize>(bytes.size()),
                                    flags, kMode, nullptr) != FALSE;
}

}  // namespace corvel
