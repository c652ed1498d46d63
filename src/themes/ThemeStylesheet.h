#pragma once

#include "themes/Theme.h"

#include <string>

namespace corvel {

/// The stylesheet of every rendered page: a pure function of the theme, byte for byte. Colours are
/// inserted as they stand. A font size that does not fit in 64 bits stops the program.
std::string generateCSS(const Theme& theme);

}  // namespace corvel
