#include "ai/KeychainService.h"

#include "platform/Text.h"

#include <utility>

namespace corvel {

void KeychainService::readKey(AIProviderType type,
                              std::function<void(std::optional<std::string>)> done) {
    m_store.lookUp(itemOf(type), [done = std::move(done)](std::optional<std::string> key) {
        if (key && !text::isValidUtf8(*key)) key.reset();
        done(std::move(key));
    });
}

void KeychainService::hasKey(AIProviderType type, std::function<void(bool)> done) {
    findKey(type, [done = std::move(done)](KeyState state) { done(state == KeyState::stored); });
}

void KeychainService::findKey(AIProviderType type, std::function<void(KeyState)> done) {
    m_store.contains(itemOf(type), [done = std::move(done)](bool isThere, auto status) {
        if (isThere) return done(KeyState::stored);
        done(SecretStore::isServiceMissing(status) ? KeyState::noStore : KeyState::notStored);
    });
}

void KeychainService::saveKey(const std::string& key,
                              AIProviderType type,
                              std::function<void(std::optional<KeychainError>)> done) {
    const auto label = std::string("qno Corvel: ") + displayName(type);
    m_store.remove(itemOf(type), [this, key, type, label, done = std::move(done)](auto) {
        m_store.add(itemOf(type), label, key, [this, type, done](SecretStore::Status status) {
            m_changed.emit(type);
            if (status == SecretStore::kDone) return done(std::nullopt);
            done(KeychainError{status});
        });
    });
}

void KeychainService::deleteKey(AIProviderType type, std::function<void()> done) {
    m_store.remove(itemOf(type), [this, type, done = std::move(done)](auto) {
        m_changed.emit(type);
        done();
    });
}

}  // namespace corvel
