#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// The desktop's password store (Secret Service, over D-Bus). An item is known by a service and an
/// account and holds bytes. Nothing here waits: a locked store may ask the user for a password
/// before it answers. Each `done` is called once on the main loop, never before the function
/// returns, and not at all once this object is destroyed.
class SecretStore {
public:
    /// 0 is success. Other values are those of libsecret; those of D-Bus and of the input and
    /// output below it are made negative: -1000 and -2000 less their number.
    using Status = std::int32_t;
    static constexpr Status kDone = 0;

    struct Item {
        std::string service;
        std::string account;
    };

    SecretStore();
    SecretStore(const SecretStore&) = delete;
    SecretStore& operator=(const SecretStore&) = delete;
    ~SecretStore();

    /// Gives none when there is no such item or it cannot be read.
    void lookUp(const Item& item, std::function<void(std::optional<std::string> secret)> done);
    /// Whether there is such an item, locked or not, and whether that could be found out. Never
    /// asks the user.
    void contains(const Item& item, std::function<void(bool isThere, Status status)> done);
    /// Adds an item, shown to the user under `label`. One of the same name is replaced.
    void add(const Item& item,
             const std::string& label,
             const std::string& secret,
             std::function<void(Status status)> done);
    /// Removes every item of that name.
    void remove(const Item& item, std::function<void(Status status)> done);

    /// Whether a status says that the store stayed locked, or that the user refused to open it.
    static bool isLocked(Status status);
    /// Whether a status says that no password store runs here.
    static bool isServiceMissing(Status status);

private:
    GObjectHandle<GCancellable> m_cancellable;
};

}  // namespace corvel
