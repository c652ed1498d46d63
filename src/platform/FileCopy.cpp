#include "platform/FileCopy.h"

#include "platform/RegularFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace corvel {

namespace {

constexpr std::size_t kBuffer = std::size_t{128} * 1024;
constexpr mode_t kMode = 0666;

}  // namespace

FileCopy::FileCopy(const std::filesystem::path& from, const std::filesystem::path& to)
    : m_path(to) {
    auto source = openRegularFile(from);
    if (!source) {
        stop(errno, true);
        return;
    }
    m_from = std::move(source->file);
    m_to = FileDescriptor(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode));
    if (!m_to.isOpen()) stop(errno, false);
}

FileCopy::~FileCopy() {
    if (m_to.isOpen() && !m_isWhole) ::unlink(m_path.c_str());
}

bool FileCopy::stop(int error, bool isSource) {
    m_error = error;
    m_isSourceBad = isSource;
    return false;
}

bool FileCopy::step(std::size_t most) {
    if (m_error != 0) return false;
    std::vector<char> buffer(std::min(most, kBuffer));
    for (std::size_t done = 0; done < most;) {
        const ssize_t count =
            ::read(m_from.get(), buffer.data(), std::min(buffer.size(), most - done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return stop(errno, true);
        if (count == 0) {
            m_isWhole = true;
            return false;
        }
        if (!writeAll(buffer.data(), static_cast<std::size_t>(count))) return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool FileCopy::writeAll(const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::write(m_to.get(), data, size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return stop(errno, false);
        data += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace corvel
