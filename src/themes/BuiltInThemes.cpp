#include "themes/BuiltInThemes.h"

#include <utility>

namespace corvel::themes {

namespace {

Theme builtIn(const char* name, Appearance appearance, ThemeColors colors) {
    return {.id = Uuid::random(),
            .name = name,
            .version = 1,
            .appearance = appearance,
            .colors = std::move(colors),
            .typography = {.fontFamily = "SF Pro Text", .monoFontFamily = "SF Mono"},
            .isBuiltIn = true};
}

}  // namespace

const Theme& builtInLight() {
    static const Theme theme = builtIn("Corvel Light", Appearance::light,
                                       {.background = "#FFFFFF",
                                        .foreground = "#1A1A1A",
                                        .accent = "#007AFF",
                                        .sidebar = "#F5F5F5",
                                        .sidebarText = "#333333",
                                        .editor = "#FFFFFF",
                                        .editorText = "#1A1A1A",
                                        .heading = "#111111",
                                        .link = "#007AFF",
                                        .codeBackground = "#F0F0F0",
                                        .codeForeground = "#D63384",
                                        .blockquoteBorder = "#007AFF",
                                        .blockquoteText = "#555555",
                                        .selection = "#007AFF33",
                                        .cursor = "#007AFF"});
    return theme;
}

const Theme& builtInDark() {
    static const Theme theme = builtIn("Corvel Dark", Appearance::dark,
                                       {.background = "#1E1E1E",
                                        .foreground = "#E0E0E0",
                                        .accent = "#64B5F6",
                                        .sidebar = "#252525",
                                        .sidebarText = "#CCCCCC",
                                        .editor = "#1E1E1E",
                                        .editorText = "#E0E0E0",
                                        .heading = "#FFFFFF",
                                        .link = "#64B5F6",
                                        .codeBackground = "#2D2D2D",
                                        .codeForeground = "#CE9178",
                                        .blockquoteBorder = "#64B5F6",
                                        .blockquoteText = "#AAAAAA",
                                        .selection = "#64B5F633",
                                        .cursor = "#64B5F6"});
    return theme;
}

const Theme& builtInSepia() {
    static const Theme theme = builtIn("Corvel Sepia", Appearance::light,
                                       {.background = "#F5E6D0",
                                        .foreground = "#3E2723",
                                        .accent = "#8D6E63",
                                        .sidebar = "#EDE0CF",
                                        .sidebarText = "#4E342E",
                                        .editor = "#F5E6D0",
                                        .editorText = "#3E2723",
                                        .heading = "#3E2723",
                                        .link = "#8D6E63",
                                        .codeBackground = "#E8D5BF",
                                        .codeForeground = "#6D4C41",
                                        .blockquoteBorder = "#8D6E63",
                                        .blockquoteText = "#5D4037",
                                        .selection = "#8D6E6333",
                                        .cursor = "#8D6E63"});
    return theme;
}

}  // namespace corvel::themes
