#include "library/LinkError.h"

#include <utility>

namespace corvel {

LinkError::LinkError(LinkFault fault, std::filesystem::path path, const std::string& detail)
    : std::runtime_error(path.string() + ": " + detail), m_fault(fault), m_path(std::move(path)) {}

LinkError::LinkError(std::filesystem::path path, const FileError& error)
    : std::runtime_error(error.what())
    , m_fault(LinkFault::file)
    , m_fileFault(error.fault())
    , m_path(std::move(path)) {}

LinkError::LinkError(std::filesystem::path path, OtherNote other)
    : std::runtime_error(path.string() + ": is linked with the note \"" + other.title + "\"")
    , m_fault(LinkFault::alreadyLinked)
    , m_path(std::move(path))
    , m_otherNote(std::move(other)) {}

}  // namespace corvel
