#pragma once

#include "themes/Theme.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// A theme as the JSON file that users keep, read and pass on.
class ThemeFile {
public:
    /// Pretty-printed, keys in alphabetical order at every level. The theme's sizes must be usable.
    static std::string encode(const Theme& theme);

    /// None unless every key is there with its type and the sizes are usable. Other keys are
    /// ignored.
    static std::optional<Theme> decode(std::string_view bytes);
};

/// True for numbers that a stylesheet can be made from: finite, the font size within 64 bits.
bool hasUsableSizes(const ThemeTypography& typography);

/// The name of the theme's file: "My Night Theme" gives "my-night-theme.qnotheme". Always one name
/// in one folder, so different themes may share it.
std::string themeFileName(const Theme& theme);

}  // namespace corvel
