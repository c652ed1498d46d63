#include "platform/PackageQuery.h"

#include <glibmm/main.h>

#include <array>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

using ErrorHandle = Handle<GError, g_error_free>;
using VariantHandle = Handle<GVariant, g_variant_unref>;

constexpr const char* kName = "org.freedesktop.PackageKit";
constexpr const char* kPath = "/org/freedesktop/PackageKit";
constexpr const char* kTransaction = "org.freedesktop.PackageKit.Transaction";
constexpr guint64 kFilterNone = 1U << 1U;
constexpr guint64 kFilterInstalled = 1U << 2U;
constexpr unsigned kExitSuccess = 1;

bool isMissing(const GError* error) {
    // The input and output's own errors are those of the bus; but for this, which is what the
    // service says in words of its own.
    if (error->domain == G_IO_ERROR) return error->code != G_IO_ERROR_DBUS_ERROR;
    if (error->domain != G_DBUS_ERROR) return false;
    return error->code == G_DBUS_ERROR_SERVICE_UNKNOWN ||
           error->code == G_DBUS_ERROR_NAME_HAS_NO_OWNER ||
           error->code == G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND ||
           error->code == G_DBUS_ERROR_SPAWN_EXEC_FAILED;
}

/// The second part of "name;version;architecture;origin"; empty when the first is not `name`.
std::string versionIn(std::string_view id, std::string_view name) {
    if (!id.starts_with(name) || id.substr(name.size(), 1) != ";") return {};
    id.remove_prefix(name.size() + 1);
    return std::string(id.substr(0, id.find(';')));
}

}  // namespace

/// What an answer of the bus finds its way back by.
struct PackageQuery::Call {
    PackageQuery* query;
    std::weak_ptr<int> alive;

    template <void (PackageQuery::*take)(GAsyncResult*)>
    static void answered(GObject*, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<Call> self(static_cast<Call*>(data));
        if (!self->alive.expired()) (self->query->*take)(result);
    }
};

PackageQuery::Call* PackageQuery::call() {
    return new Call{this, m_alive};
}

PackageQuery::PackageQuery(std::string package, Done done, std::chrono::milliseconds silence)
    : m_package(std::move(package))
    , m_done(std::move(done))
    , m_silence(silence)
    , m_cancellable(g_cancellable_new()) {
    waitForAWord();
    const Handle<char, g_free> address(
        g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    // A connection of its own: checking is rare, and nothing is to listen in between. One without
    // an address fails as one to an address where nobody is.
    g_dbus_connection_new_for_address(
        address ? address.get() : "unix:path=/nonexistent",
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, m_cancellable.get(), Call::answered<&PackageQuery::connected>, call());
}

PackageQuery::~PackageQuery() {
    g_cancellable_cancel(m_cancellable.get());
    if (!m_bus) return;
    for (const auto id : m_followed)
        g_dbus_connection_signal_unsubscribe(m_bus.get(), id);
    // The service drops a transaction whose asker has gone.
    g_dbus_connection_close(m_bus.get(), nullptr, nullptr, nullptr);
}

void PackageQuery::connected(GAsyncResult* result) {
    GError* raw = nullptr;
    m_bus.reset(g_dbus_connection_new_for_address_finish(result, &raw));
    const ErrorHandle error(raw);
    if (!m_bus) return end({PackageNews::Kind::serviceMissing});
    g_dbus_connection_set_exit_on_close(m_bus.get(), FALSE);
    follow("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
           "NameOwnerChanged", kName);
    begin(Step::resolve);
}

void PackageQuery::follow(const char* sender,
                          const char* path,
                          const char* interface,
                          const char* member,
                          const char* argument) {
    const auto came = [](GDBusConnection*, const char*, const char*, const char* from,
                         const char* signal, GVariant* arguments, gpointer data) {
        auto* self = static_cast<PackageQuery*>(data);
        if (std::string_view(from) == kTransaction) return self->signalCame(signal, arguments);
        self->ownerChanged(arguments);
    };
    m_followed.push_back(
        g_dbus_connection_signal_subscribe(m_bus.get(), sender, interface, member, path, argument,
                                           G_DBUS_SIGNAL_FLAGS_NONE, came, this, nullptr));
}

// Each question is a transaction of its own.
void PackageQuery::begin(Step step) {
    m_step = step;
    m_version.clear();
    g_dbus_connection_call(m_bus.get(), kName, kPath, kName, "CreateTransaction", nullptr,
                           G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, G_MAXINT,
                           m_cancellable.get(), Call::answered<&PackageQuery::transactionMade>,
                           call());
}

void PackageQuery::transactionMade(GAsyncResult* result) {
    GError* raw = nullptr;
    const VariantHandle answer(g_dbus_connection_call_finish(m_bus.get(), result, &raw));
    const ErrorHandle error(raw);
    if (!answer) return fail(error.get());
    waitForAWord();
    const char* path = nullptr;
    g_variant_get(answer.get(), "(&o)", &path);
    run(path);
}

void PackageQuery::run(const char* path) {
    follow(kName, path, kTransaction, nullptr, nullptr);
    const std::array<const char*, 2> names{m_package.c_str(), nullptr};
    const bool isResolve = m_step == Step::resolve;
    GVariant* arguments = isResolve ? g_variant_new("(t^as)", kFilterInstalled, names.data())
                                    : g_variant_new("(t)", kFilterNone);
    g_dbus_connection_call(m_bus.get(), kName, path, kTransaction,
                           isResolve ? "Resolve" : "GetUpdates", arguments, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, G_MAXINT, m_cancellable.get(),
                           Call::answered<&PackageQuery::callEnded>, call());
}

void PackageQuery::callEnded(GAsyncResult* result) {
    GError* raw = nullptr;
    const VariantHandle answer(g_dbus_connection_call_finish(m_bus.get(), result, &raw));
    const ErrorHandle error(raw);
    if (!answer) fail(error.get());
}

// What comes in another shape than expected is left out: services of other versions say more.
void PackageQuery::signalCame(const std::string& signal, GVariant* arguments) {
    waitForAWord();
    const auto has = [&](const char* type) {
        return g_variant_is_of_type(arguments, G_VARIANT_TYPE(type)) != FALSE;
    };
    const char* text = nullptr;
    if (signal == "Package" && has("(uss)")) {
        g_variant_get(arguments, "(u&s&s)", nullptr, &text, nullptr);
        packageCame(text);
    } else if (signal == "Packages" && has("(a(uss))")) {
        const VariantHandle list(g_variant_get_child_value(arguments, 0));
        for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
            const VariantHandle one(g_variant_get_child_value(list.get(), i));
            g_variant_get(one.get(), "(u&s&s)", nullptr, &text, nullptr);
            packageCame(text);
        }
    } else if (signal == "ErrorCode" && has("(us)")) {
        g_variant_get(arguments, "(u&s)", nullptr, &text);
        m_error = text;
    } else if (signal == "Finished" && has("(uu)")) {
        guint exit = 0;
        g_variant_get(arguments, "(uu)", &exit, nullptr);
        finished(exit);
    }
}

void PackageQuery::packageCame(const char* id) {
    auto version = versionIn(id, m_package);
    if (!version.empty()) m_version = std::move(version);
}

void PackageQuery::finished(unsigned exit) {
    using Kind = PackageNews::Kind;
    if (exit != kExitSuccess || !m_error.empty()) return end({Kind::failed, {}, m_error});
    if (m_step == Step::updates) {
        return end({m_version.empty() ? Kind::upToDate : Kind::newer, m_version});
    }
    if (m_version.empty()) return end({Kind::notInstalled});
    begin(Step::updates);
}

void PackageQuery::ownerChanged(GVariant* arguments) {
    if (g_variant_is_of_type(arguments, G_VARIANT_TYPE("(sss)")) == FALSE) return;
    const char* owner = nullptr;
    g_variant_get(arguments, "(&s&s&s)", nullptr, nullptr, &owner);
    if (*owner == '\0') end({PackageNews::Kind::failed, {}, m_error});
}

void PackageQuery::fail(const GError* error) {
    using Kind = PackageNews::Kind;
    if (isMissing(error)) return end({Kind::serviceMissing});
    const Handle<GError, g_error_free> own(g_error_copy(error));
    g_dbus_error_strip_remote_error(own.get());
    end({Kind::failed, {}, own->message});
}

void PackageQuery::end(const PackageNews& news) {
    if (!m_done) return;
    m_timer.disconnect();
    // It may be destroyed by the call.
    const auto done = std::exchange(m_done, nullptr);
    done(news);
}

void PackageQuery::waitForAWord() {
    m_timer = Glib::signal_timeout().connect(
        [this] {
            end({PackageNews::Kind::failed});
            return false;
        },
        static_cast<unsigned>(m_silence.count()));
}

}  // namespace corvel
