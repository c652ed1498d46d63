#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// Why a text cannot be a key. Keys travel in a header or in an address, in one line.
enum class ApiKeyFault {
    empty,
    innerSpace,         ///< white space or a line end between other characters
    unusualCharacters,  ///< others than the letters, digits and signs of ASCII
};

/// What was pasted or typed, without the white space, line ends and invisible marks around it.
std::string_view trimmedApiKey(std::string_view entered);
/// None for a key that can be sent. `key` is trimmed already.
std::optional<ApiKeyFault> faultOf(std::string_view key);

}  // namespace corvel
