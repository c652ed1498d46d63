#include "platform/FileError.h"

#include <cerrno>
#include <system_error>

namespace corvel {

namespace {

FileFault faultOf(int code) {
    switch (code) {
        case ENOENT:
        case ENOTDIR:
            return FileFault::missing;
        case EACCES:
        case EPERM:
            return FileFault::noPermission;
        case EROFS:
            return FileFault::readOnly;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return FileFault::diskFull;
        case EISDIR:
            return FileFault::folder;
        case ENXIO:
        case ENODEV:
            return FileFault::notAFile;
        case ELOOP:
            return FileFault::linkLoop;
        default:
            return FileFault::failed;
    }
}

}  // namespace

FileError::FileError(FileFault fault, const std::filesystem::path& path, const std::string& detail)
    : std::runtime_error(path.string() + ": " + detail), m_fault(fault) {}

FileError FileError::fromCode(int code, const std::filesystem::path& path) {
    return {faultOf(code), path, std::generic_category().message(code)};
}

FileError FileError::noAnswer(const std::filesystem::path& path) {
    return {FileFault::noAnswer, path, "its volume does not answer"};
}

}  // namespace corvel
