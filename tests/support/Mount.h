#pragma once

#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mount.h>

#include <filesystem>
#include <string>
#include <utility>

namespace corvel {

/// A volume on a folder while one lives. Only root has any: `isMounted` tells.
class Mount {
public:
    /// In memory.
    static Mount ofSize(const std::filesystem::path& folder, const std::string& size) {
        return {folder, "tmpfs", "size=" + size, FileDescriptor()};
    }
    /// In memory, without a limit and without a way to make sure of room beforehand.
    static Mount withoutRoomToKeep(const std::filesystem::path& folder) {
        return {folder, "ramfs", "", FileDescriptor()};
    }
    /// Whoever looks at a file there waits until this is gone.
    static Mount silent(const std::filesystem::path& folder) {
        FileDescriptor server(::open("/dev/fuse", O_RDWR | O_CLOEXEC));
        const auto options =
            "fd=" + std::to_string(server.get()) + ",rootmode=40000,user_id=0,group_id=0";
        return {folder, "fuse.silent", options, std::move(server)};
    }
    Mount(const Mount&) = delete;
    Mount& operator=(const Mount&) = delete;
    ~Mount() {
        m_server = FileDescriptor();  // those who wait get an error
        if (m_isMounted) ::umount2(m_folder.c_str(), MNT_DETACH);
    }

    bool isMounted() const { return m_isMounted; }
    bool change(unsigned long flags, const std::string& options) const {
        return ::mount("none", m_folder.c_str(), "", MS_REMOUNT | flags, options.c_str()) == 0;
    }

private:
    Mount(std::filesystem::path folder,
          const char* type,
          const std::string& options,
          FileDescriptor server)
        : m_folder(std::move(folder))
        , m_server(std::move(server))
        , m_isMounted(::mount("none", m_folder.c_str(), type, 0, options.c_str()) == 0) {}

    std::filesystem::path m_folder;
    FileDescriptor m_server;
    bool m_isMounted;
};

}  // namespace corvel
