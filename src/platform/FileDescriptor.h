#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

namespace corvel {

/// Owns an open file of the system; negative for none.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() {
        if (m_number >= 0) ::close(m_number);
    }

    int get() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number = -1;
};

/// Opens whatever somebody may have put there, and never waits, as opening a pipe would. Not open,
/// with `errno` set, when that fails.
inline FileDescriptor openForReading(const std::filesystem::path& path) {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
}

}  // namespace corvel
