#pragma once

#include "ai/AIProviderFactory.h"
#include "ai/KeychainService.h"
#include "app/settings/Preferences.h"
#include "platform/HttpClient.h"
#include "platform/SecretStore.h"

namespace corvel {

/// What the assistant stands on, put together. Costs nothing until it is used.
struct AIServices {
    explicit AIServices(const Preferences& preferences) : factory(http, keychain, preferences) {}

    HttpClient http;
    SecretStore secrets;
    KeychainService keychain{secrets};
    AIProviderFactory factory;
};

}  // namespace corvel
