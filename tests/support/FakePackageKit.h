#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// A package service on the bus that DBUS_SYSTEM_BUS_ADDRESS names, which it sets to the session
/// bus of the test.
class FakePackageKit {
public:
    /// What a question is answered with, in this order.
    struct Answer {
        std::vector<std::string> packages;  ///< "name;version;architecture;origin"
        std::string error = {};             ///< for the people, with ErrorCode
        unsigned exit = 1;                  ///< 1: success
        bool isRefused = false;             ///< the call itself fails
        bool isSilent = false;              ///< nothing comes at all
    };

    FakePackageKit();
    FakePackageKit(const FakePackageKit&) = delete;
    FakePackageKit& operator=(const FakePackageKit&) = delete;
    ~FakePackageKit();

    /// Takes the name off the bus.
    void vanish();

    Answer installed{{"qno-corvel;1.0;amd64;installed", "qno-corvel-doc;1.0;all;installed"}};
    Answer updates;
    /// The questions as they came: "Resolve qno-corvel", "GetUpdates".
    std::vector<std::string> asked;

private:
    void answer(const char* method, GVariant* arguments, GDBusMethodInvocation* invocation);
    void emit(const std::string& path, const char* signal, GVariant* arguments);
    void callBus(const char* method, GVariant* arguments);

    GObjectHandle<GDBusConnection> m_bus;
    std::vector<unsigned> m_objects;
    int m_transactions = 0;
};

}  // namespace corvel
