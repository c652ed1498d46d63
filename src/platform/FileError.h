#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace corvel {

enum class FileFault {
    missing,
    noPermission,
    readOnly,  ///< the volume, not the file
    diskFull,  ///< also a quota or the largest size a file may have
    folder,
    notAFile,  ///< a pipe, a device, a socket
    linkLoop,
    tooLarge,
    changed,   ///< the file is not the one that was expected
    noAnswer,  ///< its volume is silent: a server that is gone, a program that hangs
    failed,
};

/// Reading or writing a file failed.
class FileError : public std::runtime_error {
public:
    FileError(FileFault fault, const std::filesystem::path& path, const std::string& detail);
    /// From the system's error number.
    static FileError fromCode(int code, const std::filesystem::path& path);
    static FileError noAnswer(const std::filesystem::path& path);

    FileFault fault() const { return m_fault; }

private:
    FileFault m_fault;
};

}  // namespace corvel
