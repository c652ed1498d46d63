#pragma once

#include "themes/Theme.h"

namespace corvel {

/// The rules that go behind a theme's style sheet on the screen: the web view draws check boxes and
/// scrollbars itself, and would draw light ones on a dark page. It fills an empty box that cannot
/// be clicked with grey, which on a dark page looks like a mark.
constexpr const char* controlColors(const Theme& theme) {
    return theme.appearance == Appearance::dark ? R"css(
:root { color-scheme: dark; }
input[type="checkbox"]:disabled:not(:checked) {
    appearance: none;
    box-sizing: border-box;
    width: 12px;
    height: 12px;
    border: 1px solid currentColor;
    border-radius: 3px;
    opacity: 0.6;
    vertical-align: -3px;
}
)css"
                                                : "";
}

}  // namespace corvel
