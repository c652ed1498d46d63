#pragma once

#include "ai/AIProviderType.h"
#include "platform/UserDefaults.h"

#include <optional>
#include <string>

namespace corvel {

/// Where a service is reached: scheme, host and perhaps the start of a path, without a slash at the
/// end. The preferences `aiEndpoint_claude`, `aiEndpoint_openai` and `aiEndpoint_gemini` point to a
/// gateway instead; none when what they hold is neither https nor http to this machine itself, as
/// the key would travel in the open.
std::optional<std::string> endpointOf(AIProviderType type, const UserDefaults& defaults);

}  // namespace corvel
