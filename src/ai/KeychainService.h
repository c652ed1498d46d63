#pragma once

#include "ai/AIProviderType.h"
#include "ai/KeychainError.h"
#include "platform/SecretStore.h"

#include <sigc++/signal.h>

#include <functional>
#include <optional>
#include <string>

namespace corvel {

enum class KeyState { stored, notStored, noStore };

/// Keeps one API key for each service in the desktop's password store. Each `done` is called once,
/// on the main loop, never before the function returns; not at all once the store is destroyed.
class KeychainService {
public:
    static constexpr const char* serviceName = "com.qno.corvel.ai";

    /// `store` must outlive this service.
    explicit KeychainService(SecretStore& store) : m_store(store) {}

    /// None when there is no key, the user did not unlock the store, or what it holds is no UTF-8.
    void readKey(AIProviderType type, std::function<void(std::optional<std::string> key)> done);
    /// Whether a key is stored. Does not unlock the store.
    void hasKey(AIProviderType type, std::function<void(bool isThere)> done);
    /// The same, and whether there is a password store at all.
    void findKey(AIProviderType type, std::function<void(KeyState state)> done);
    /// Removes the key that is there, then adds `key` as it stands. `done` gets why it failed.
    void saveKey(const std::string& key,
                 AIProviderType type,
                 std::function<void(std::optional<KeychainError> error)> done);
    /// A key that is not there counts as deleted.
    void deleteKey(AIProviderType type, std::function<void()> done);

    /// Emitted after a key was saved or deleted.
    sigc::signal<void(AIProviderType)>& signalChanged() { return m_changed; }

private:
    static SecretStore::Item itemOf(AIProviderType type) { return {serviceName, rawValue(type)}; }

    SecretStore& m_store;
    sigc::signal<void(AIProviderType)> m_changed;
};

}  // namespace corvel
