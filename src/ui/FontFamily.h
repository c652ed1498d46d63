#pragma once

#include <string>

namespace corvel {

/// A theme's font as one family that the font library can look up at once: themes come from files,
/// and a list of thousands of families would keep it busy.
std::string fontFamily(const std::string& name);

/// The same as a string of CSS: nothing in the name ends the string.
std::string quotedFontFamily(const std::string& name);

}  // namespace corvel
