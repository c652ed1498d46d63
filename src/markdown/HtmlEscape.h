#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// Appends `text` with "&", "<", ">" and the double quote as entities; the apostrophe stays.
void appendEscaped(std::string& output, std::string_view text);

/// `css` such that a `style` element takes all of it: a "</style" within is written with CSS's own
/// escape, a NUL byte as U+FFFD, everything else stays as it is.
std::string styleText(std::string_view css);

}  // namespace corvel
