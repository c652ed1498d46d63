#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvel {

/// Up to `size` bytes from where the open file stands; fewer where it ends earlier. None when
/// reading fails.
template <typename Bytes>
std::optional<Bytes> readAll(int file, std::size_t size) {
    Bytes bytes(size, {});
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t count = ::read(file, bytes.data() + filled, size - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    bytes.resize(filled);
    return bytes;
}

/// Appends all that comes from `file` until its end. False when reading fails: `bytes` then has
/// what came before.
inline bool appendAll(int file, std::string& bytes) {
    constexpr std::size_t kChunk = std::size_t{256} * 1024;
    for (;;) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kChunk);
        const ssize_t count = ::read(file, bytes.data() + size, kChunk);
        bytes.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
        if (count == 0) return true;
        if (count < 0 && errno != EINTR) return false;
    }
}

/// All that comes from `file`, a pipe for one, until its end. None when reading fails.
inline std::optional<std::string> readToEnd(int file) {
    std::string bytes;
    return appendAll(file, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
}

/// False, with `errno` set, when not all could be written.
inline bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace corvel
