#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// `text` without the characters that XML 1.0 cannot hold (most control characters, U+FFFE and
/// U+FFFF). `text` is UTF-8.
std::string withoutForbiddenCharacters(std::string_view text);

/// The same with "&", "<", ">", both quotes as entities, for text and attributes.
std::string xmlEscaped(std::string_view text);

}  // namespace corvel
