#pragma once

#include "platform/Uuid.h"

#include <cstdint>
#include <string>

namespace corvel {

enum class Appearance { light, dark };

/// Colours as text: "#RRGGBB" or "#RRGGBBAA".
struct ThemeColors {
    std::string background;
    std::string foreground;
    std::string accent;
    std::string sidebar;
    std::string sidebarText;
    std::string editor;
    std::string editorText;
    std::string heading;
    std::string link;
    std::string codeBackground;  ///< also the colour of rules and table borders
    std::string codeForeground;
    std::string blockquoteBorder;
    std::string blockquoteText;
    std::string selection;  ///< normally with an alpha byte
    std::string cursor;

    bool operator==(const ThemeColors&) const = default;
};

struct ThemeTypography {
    std::string fontFamily;
    std::string monoFontFamily;
    double baseFontSize = 15.0;  ///< CSS pixels; must be finite and fit in 64 bits
    double lineHeight = 1.6;     ///< multiple of the font size

    bool operator==(const ThemeTypography&) const = default;
};

/// Every colour and the typography of the editor, the preview and the exported documents.
struct Theme {
    Uuid id;
    std::string name;
    std::int64_t version = 1;
    Appearance appearance = Appearance::light;
    ThemeColors colors;
    ThemeTypography typography;
    bool isBuiltIn = false;

    bool operator==(const Theme&) const = default;
};

}  // namespace corvel
