#pragma once

#include "platform/FileDescriptor.h"

#include <csignal>
#include <filesystem>
#include <functional>

namespace corvel {

/// While one lives, calls `action` once, as soon as a file comes into being in `folder`: on the
/// thread that made it, before its call of the system returns. One at a time.
class OnNewFile {
public:
    OnNewFile(const std::filesystem::path& folder, std::function<void()> action);
    OnNewFile(const OnNewFile&) = delete;
    OnNewFile& operator=(const OnNewFile&) = delete;
    ~OnNewFile();

private:
    FileDescriptor m_events;
    struct sigaction m_before {};
};

}  // namespace corvel
