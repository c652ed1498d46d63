#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace corvel {

/// How this program came onto the machine.
struct InstallOrigin {
    enum class Kind { flatpak, package, built };

    Kind kind = Kind::built;
    std::string package = {};  ///< the Debian package that the executable belongs to
};

/// Finds it out without waiting. Destroyed, nothing more is called.
class InstallOriginQuery {
public:
    struct Places {
        std::filesystem::path flatpakInfo = "/.flatpak-info";
        std::filesystem::path executable = "/proc/self/exe";
        std::string packageTool = "dpkg-query";
    };
    using Done = std::function<void(const InstallOrigin& origin)>;

    /// `done` is called once, on the main loop; for what is known at once, before the constructor
    /// returns.
    InstallOriginQuery(const Places& places, Done done);
    InstallOriginQuery(const InstallOriginQuery&) = delete;
    InstallOriginQuery& operator=(const InstallOriginQuery&) = delete;
    ~InstallOriginQuery();

private:
    struct Call;

    void answered(GAsyncResult* result);

    Done m_done;
    GObjectHandle<GCancellable> m_cancellable;
    GObjectHandle<GSubprocess> m_tool;
    std::shared_ptr<int> m_alive = std::make_shared<int>();  // gone with this: late answers stop
};

}  // namespace corvel
