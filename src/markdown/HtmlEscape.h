#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// Appends `text` with "&", "<", ">" and the double quote as entities; the apostrophe stays.
void appendEscaped(std::string& output, std::string_view text);

}  // namespace corvel
