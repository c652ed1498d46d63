#pragma once

#include "platform/FileDescriptor.h"

#include <cstddef>
#include <filesystem>

namespace corvel {

/// Copies one regular file to a new one, some bytes at a step. What did not come to its end goes
/// when this does: part of a file must not be taken for the whole.
class FileCopy {
public:
    /// `to` must not exist. A failure shows in `error`.
    FileCopy(const std::filesystem::path& from, const std::filesystem::path& to);
    FileCopy(FileCopy&&) = default;
    FileCopy& operator=(FileCopy&&) = delete;
    ~FileCopy();

    /// Copies at most `most` bytes; false when nothing is left to do.
    bool step(std::size_t most);
    /// The system's number of what went wrong; 0 for nothing.
    int error() const { return m_error; }
    /// What went wrong was opening or reading the original.
    bool isSourceBad() const { return m_isSourceBad; }

private:
    bool stop(int error, bool isSource);
    bool writeAll(const char* data, std::size_t size);

    FileDescriptor m_from;
    FileDescriptor m_to;
    std::filesystem::path m_path;  // of the copy
    bool m_isWhole = false;
    int m_error = 0;
    bool m_isSourceBad = false;
};

}  // namespace corvel
