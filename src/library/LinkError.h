#pragma once

#include "platform/FileError.h"
#include "platform/Uuid.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace corvel {

enum class LinkFault {
    file,     ///< `fileFault` says what
    binary,   ///< has NUL bytes
    utf16,    ///< UTF-16 or UTF-32
    notUtf8,  ///< text in an encoding of one byte a character, or damaged
    alreadyLinked,
};

/// A file cannot be linked, read or written.
class LinkError : public std::runtime_error {
public:
    /// The note that has the file already.
    struct OtherNote {
        Uuid id;
        std::string title;
    };

    LinkError(LinkFault fault, std::filesystem::path path, const std::string& detail);
    LinkError(std::filesystem::path path, const FileError& error);
    LinkError(std::filesystem::path path, OtherNote other);

    LinkFault fault() const { return m_fault; }
    FileFault fileFault() const { return m_fileFault; }
    const std::filesystem::path& path() const { return m_path; }
    /// Set for `alreadyLinked`.
    const std::optional<OtherNote>& otherNote() const { return m_otherNote; }

private:
    LinkFault m_fault;
    FileFault m_fileFault = FileFault::failed;
    std::filesystem::path m_path;
    std::optional<OtherNote> m_otherNote;
};

}  // namespace corvel
