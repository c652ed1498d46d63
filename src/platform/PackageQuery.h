#pragma once

#include "platform/Handle.h"
#include "platform/ScopedConnection.h"

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// What the system's package service knows of a package.
struct PackageNews {
    enum class Kind {
        serviceMissing,  ///< nothing on the system bus knows of packages
        failed,          ///< it broke off, refused or fell silent; `detail` may say why
        notInstalled,
        upToDate,
        newer,  ///< `version` is offered
    };

    Kind kind;
    std::string version = {};
    std::string detail = {};
};

/// Asks PackageKit, over the system bus, whether it has a newer version of an installed package.
/// Which version is the newer one is its own decision. Destroyed, it asks no further and nothing is
/// called.
class PackageQuery {
public:
    using Done = std::function<void(const PackageNews& news)>;

    /// `done` is called once, on the main loop, never before the constructor returns; it may
    /// destroy the query. `silence`: so long without a word from the service is a failure.
    PackageQuery(std::string package,
                 Done done,
                 std::chrono::milliseconds silence = std::chrono::seconds(60));
    PackageQuery(const PackageQuery&) = delete;
    PackageQuery& operator=(const PackageQuery&) = delete;
    ~PackageQuery();

private:
    enum class Step { resolve, updates };
    struct Call;

    void connected(GAsyncResult* result);
    void begin(Step step);
    void transactionMade(GAsyncResult* result);
    void run(const char* path);
    void callEnded(GAsyncResult* result);
    void signalCame(const std::string& signal, GVariant* arguments);
    void packageCame(const char* id);
    void finished(unsigned exit);
    void ownerChanged(GVariant* arguments);
    void end(const PackageNews& news);
    void fail(const GError* error);
    void waitForAWord();
    void follow(const char* sender,
                const char* path,
                const char* interface,
                const char* member,
                const char* argument);
    Call* call();

    std::string m_package;
    Done m_done;
    std::chrono::milliseconds m_silence;
    GObjectHandle<GCancellable> m_cancellable;
    GObjectHandle<GDBusConnection> m_bus;
    std::vector<unsigned> m_followed;
    Step m_step = Step::resolve;
    std::string m_version;  // of the package, as the step's answer names it
    std::string m_error;
    ScopedConnection m_timer;
    std::shared_ptr<int> m_alive = std::make_shared<int>();  // gone with this: late answers stop
};

}  // namespace corvel
