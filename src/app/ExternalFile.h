#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace corvel {

/// A Markdown file opened from outside the program: what `importExternalFile` carries.
struct ExternalFile {
    std::string content;  ///< in UTF-8
    std::filesystem::path path;
    std::vector<std::uint8_t> bookmark;  ///< encoded
};

enum class ExternalFault {
    notMarkdown,  ///< by its name
    elsewhere,    ///< not on this machine
    missing,
    noPermission,
    notAFile,  ///< a pipe, a device, a socket
    linkLoop,
    tooLarge,
    noAnswer,  ///< from the volume
    notText,
    notUtf8,  ///< can be imported, but not linked
    unreadable,
    storeFailed,
};

/// A file that was not opened.
struct ExternalProblem {
    std::string name;  ///< path or address, as it can be shown
    ExternalFault fault = ExternalFault::unreadable;

    bool operator==(const ExternalProblem&) const = default;
};

}  // namespace corvel
