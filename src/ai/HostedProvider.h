#pragma once

#include "ai/AIConnection.h"
#include "ai/AIProviderService.h"

#include <string>
#include <utility>

namespace corvel {

/// What the clients of the three services have in common: immutable, each with its own wire format.
class HostedProvider : public AIProviderService {
public:
    HostedProvider(AIConnection connection, std::string apiKey, std::string model)
        : m_connection(std::move(connection))
        , m_apiKey(std::move(apiKey))
        , m_model(std::move(model)) {}

protected:
    const AIConnection m_connection;
    const std::string m_apiKey;
    const std::string m_model;
};

}  // namespace corvel
