#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// What the body of an error of Gemini says: an object, an array of one (the streaming address
/// answers so), something that at least holds a "message", or else its first line. None of an
/// empty body.
std::optional<std::string> geminiErrorMessage(std::string_view body);

}  // namespace corvel
