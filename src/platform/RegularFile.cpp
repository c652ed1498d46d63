#include "platform/RegularFile.h"

#include "platform/FileBytes.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/stat.h>

#include <utility>

namespace corvel {

std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode) || std::cmp_greater(status.st_size, most)) return std::nullopt;
    return readAll<std::string>(file.get(), static_cast<std::size_t>(status.st_size));
}

bool replaceFile(const std::filesystem::path& path, const std::string& bytes) {
    constexpr int kMode = 0644;
    const auto flags = static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT |
                                                          G_FILE_SET_CONTENTS_DURABLE);
    return g_file_set_contents_full(path.c_str(), bytes.data(), static_cast<gssize>(bytes.size()),
                                    flags, kMode, nullptr) != FALSE;
}

}  // namespace corvel
