#include "app/ExternalFileProbe.h"

#include "library/Bookmark.h"
#include "library/ImportedFile.h"
#include "platform/DistantVolumes.h"
#include "platform/FileDescriptor.h"
#include "platform/Text.h"
#include "platform/WholeFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace corvel::externalFile {

namespace {

ExternalFault faultOf(int code) {
    switch (code) {
        case ENOENT:
        case ENOTDIR:
            return ExternalFault::missing;
        case EACCES:
        case EPERM:
            return ExternalFault::noPermission;
        case ELOOP:
            return ExternalFault::linkLoop;
        case ENXIO:  // a socket, or a device without a driver
        case ENODEV:
            return ExternalFault::notAFile;
        default:
            return ExternalFault::unreadable;
    }
}

// Texts of two bytes a character have zeros, but say so by a mark.
bool isText(std::string_view beginning) {
    return beginning.find('\0') == beginning.npos || beginning.starts_with("\xFF\xFE") ||
           beginning.starts_with("\xFE\xFF");
}

std::optional<ExternalFault> faultOfContent(int file) {
    std::array<char, 4096> beginning{};
    const ssize_t count = ::read(file, beginning.data(), beginning.size());
    if (count < 0) return faultOf(errno);
    const std::string_view text(beginning.data(), static_cast<std::size_t>(count));
    return isText(text) ? std::nullopt : std::optional(ExternalFault::notText);
}

}  // namespace

ExternalFault faultOf(FileFault fault) {
    switch (fault) {
        case FileFault::missing:
            return ExternalFault::missing;
        case FileFault::noPermission:
            return ExternalFault::noPermission;
        case FileFault::linkLoop:
            return ExternalFault::linkLoop;
        case FileFault::folder:
        case FileFault::notAFile:
            return ExternalFault::notAFile;
        case FileFault::tooLarge:
            return ExternalFault::tooLarge;
        case FileFault::noAnswer:
            return ExternalFault::noAnswer;
        default:
            return ExternalFault::unreadable;
    }
}

Probe probe(const std::filesystem::path& path) {
    if (!distantVolumes::answersFor(path)) return {.fault = ExternalFault::noAnswer};
    const auto file = openForReading(path);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) return {.fault = faultOf(errno)};
    Probe result;
    result.isReadable = true;
    if (S_ISDIR(status.st_mode)) {
        result.isFolder = true;
    } else if (!S_ISREG(status.st_mode)) {
        result.fault = ExternalFault::notAFile;
    } else if (std::cmp_greater(status.st_size, kLargest)) {
        result.fault = ExternalFault::tooLarge;
    } else {
        result.fault = faultOfContent(file.get());
    }
    return result;
}

std::variant<ExternalFile, ExternalFault> read(const std::filesystem::path& path) {
    if (!distantVolumes::answersFor(path)) return ExternalFault::noAnswer;
    try {
        auto file = readWholeFile(path, kLargest);
        auto text = decodedText(std::move(file.bytes));
        if (!text) return ExternalFault::notText;
        // Of a file that is imported nothing but its place is remembered.
        const Bookmark bookmark{.path = path, .stamp = file.stamp};
        return ExternalFile{*std::move(text), path, bookmark.encoded()};
    } catch (const FileError& error) {
        return faultOf(error.fault());
    }
}

std::string displayed(const std::filesystem::path& path) {
    auto name = text::repaired(path.string());
    std::ranges::replace_if(
        name, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }, '?');
    return name;
}

}  // namespace corvel::externalFile
