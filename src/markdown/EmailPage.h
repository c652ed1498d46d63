#pragma once

#include <string>
#include <string_view>

namespace corvel {

struct EmailStyle;

/// The document to send as a message: a fixed light layout around `body`, with every style on its
/// element. Throws std::invalid_argument when the font size is not finite.
std::string emailPage(std::string_view title, std::string_view body, const EmailStyle& style);

}  // namespace corvel
