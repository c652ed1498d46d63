#include "platform/SecretStore.h"

#include <libsecret/secret.h>

#include <memory>
#include <utility>

namespace corvel {

namespace {

using ErrorHandle = Handle<GError, g_error_free>;
using ValueHandle = Handle<SecretValue, secret_value_unref>;
using Status = SecretStore::Status;

constexpr Status kBusStatus = -1000;
constexpr Status kInputOutputStatus = -2000;
constexpr Status kUnknown = -1;
constexpr Status kDone = SecretStore::kDone;

const SecretSchema kSchema{"com.qno.corvel",
                           SECRET_SCHEMA_NONE,
                           {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                            {"account", SECRET_SCHEMA_ATTRIBUTE_STRING},
                            {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}},
                           0,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr};

Status statusOf(const GError* error) {
    if (error == nullptr) return kUnknown;
    if (error->domain == SECRET_ERROR) return error->code;
    if (error->domain == G_DBUS_ERROR) return kBusStatus - error->code;
    if (error->domain == G_IO_ERROR) return kInputOutputStatus - error->code;
    return kUnknown;
}

/// What waits for an answer: the caller's function and the store's cancellable, which says whether
/// the store still lives.
template <typename Done>
struct Waiting {
    Done done;
    GObjectHandle<GCancellable> cancellable;

    static Waiting* make(Done done, GCancellable* cancellable) {
        return new Waiting{
            std::move(done),
            GObjectHandle<GCancellable>(static_cast<GCancellable*>(g_object_ref(cancellable)))};
    }
    static std::unique_ptr<Waiting> taken(gpointer data) {
        return std::unique_ptr<Waiting>(static_cast<Waiting*>(data));
    }
    template <typename... Arguments>
    void answer(Arguments&&... arguments) {
        // libsecret would keep its session with the password store for good, and then fail at
        // everything once that has been started anew.
        secret_service_disconnect();
        if (g_cancellable_is_cancelled(cancellable.get()) == FALSE) {
            done(std::forward<Arguments>(arguments)...);
        }
    }
};

using WaitingForSecret = Waiting<std::function<void(std::optional<std::string>)>>;
using WaitingForItem = Waiting<std::function<void(bool, Status)>>;
using WaitingForStatus = Waiting<std::function<void(Status)>>;

void secretCame(GObject*, GAsyncResult* result, gpointer data) {
    const ValueHandle value(secret_password_lookup_binary_finish(result, nullptr));
    std::optional<std::string> secret;
    if (value) {
        gsize size = 0;
        const char* bytes = secret_value_get(value.get(), &size);
        secret.emplace(bytes, size);
    }
    WaitingForSecret::taken(data)->answer(std::move(secret));
}

void itemsCame(GObject*, GAsyncResult* result, gpointer data) {
    GError* raw = nullptr;
    GList* items = secret_password_search_finish(result, &raw);
    const ErrorHandle error(raw);
    const bool isThere = items != nullptr;
    g_list_free_full(items, g_object_unref);
    WaitingForItem::taken(data)->answer(isThere, raw == nullptr ? kDone : statusOf(raw));
}

void stored(GObject*, GAsyncResult* result, gpointer data) {
    GError* raw = nullptr;
    const bool isDone = secret_password_store_finish(result, &raw) != FALSE;
    const ErrorHandle error(raw);
    WaitingForStatus::taken(data)->answer(isDone ? kDone : statusOf(raw));
}

void cleared(GObject*, GAsyncResult* result, gpointer data) {
    GError* raw = nullptr;
    secret_password_clear_finish(result, &raw);
    const ErrorHandle error(raw);
    WaitingForStatus::taken(data)->answer(raw == nullptr ? kDone : statusOf(raw));
}

}  // namespace

SecretStore::SecretStore() : m_cancellable(g_cancellable_new()) {}

SecretStore::~SecretStore() {
    g_cancellable_cancel(m_cancellable.get());
}

void SecretStore::lookUp(const Item& item, std::function<void(std::optional<std::string>)> done) {
    secret_password_lookup(&kSchema, m_cancellable.get(), secretCame,
                           WaitingForSecret::make(std::move(done), m_cancellable.get()), "service",
                           item.service.c_str(), "account", item.account.c_str(), nullptr);
}

void SecretStore::contains(const Item& item, std::function<void(bool, Status)> done) {
    secret_password_search(&kSchema, SECRET_SEARCH_NONE, m_cancellable.get(), itemsCame,
                           WaitingForItem::make(std::move(done), m_cancellable.get()), "service",
                           item.service.c_str(), "account", item.account.c_str(), nullptr);
}

void SecretStore::add(const Item& item,
                      const std::string& label,
                      const std::string& secret,
                      std::function<void(Status)> done) {
    const ValueHandle value(secret_value_new(secret.data(), static_cast<gssize>(secret.size()),
                                             "text/plain; charset=utf-8"));
    secret_password_store_binary(
        &kSchema, SECRET_COLLECTION_DEFAULT, label.c_str(), value.get(), m_cancellable.get(),
        stored, WaitingForStatus::make(std::move(done), m_cancellable.get()), "service",
        item.service.c_str(), "account", item.account.c_str(), nullptr);
}

void SecretStore::remove(const Item& item, std::function<void(Status)> done) {
    secret_password_clear(&kSchema, m_cancellable.get(), cleared,
                          WaitingForStatus::make(std::move(done), m_cancellable.get()), "service",
                          item.service.c_str(), "account", item.account.c_str(), nullptr);
}

bool SecretStore::isLocked(Status status) {
    return status == SECRET_ERROR_IS_LOCKED || status == kInputOutputStatus - G_IO_ERROR_CANCELLED;
}

bool SecretStore::isServiceMissing(Status status) {
    return status == kBusStatus - G_DBUS_ERROR_SERVICE_UNKNOWN ||
           status == kBusStatus - G_DBUS_ERROR_NAME_HAS_NO_OWNER ||
           status == kBusStatus - G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND ||
           status == kBusStatus - G_DBUS_ERROR_SPAWN_EXEC_FAILED ||
           status == kInputOutputStatus - G_IO_ERROR_NOT_FOUND ||
           status == kInputOutputStatus - G_IO_ERROR_CONNECTION_REFUSED ||
           status == kInputOutputStatus - G_IO_ERROR_CLOSED;
}

}  // namespace corvel
