#pragma once

#include "ai/AIProviderSource.h"
#include "ai/KeychainService.h"
#include "app/settings/Preferences.h"
#include "platform/HttpClient.h"

#include <string>

namespace corvel {

/// Makes the services from the keys in the password store and the models in the preferences. All
/// that it is given must outlive it and what it makes.
class AIProviderFactory : public AIProviderSource {
public:
    AIProviderFactory(const HttpClient& http,
                      KeychainService& keychain,
                      const Preferences& preferences)
        : m_http(http), m_keychain(keychain), m_preferences(preferences) {}

    void makeProvider(AIProviderType type, Made done) override;
    void hasKey(AIProviderType type, std::function<void(bool isThere)> done) override;
    sigc::signal<void(AIProviderType)>& signalKeyChanged() override {
        return m_keychain.signalChanged();
    }

    /// A service with a key of the caller's, to try one out before it is saved.
    std::unique_ptr<AIProviderService> providerWith(AIProviderType type,
                                                    const std::string& key) const;

private:
    const HttpClient& m_http;
    KeychainService& m_keychain;
    const Preferences& m_preferences;
};

}  // namespace corvel
