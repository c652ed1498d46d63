#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// What a content security policy (CSP, `script-src`) names this script text by: "sha256-" and the
/// digest in base64.
std::string scriptHashOf(std::string_view script);

}  // namespace corvel
