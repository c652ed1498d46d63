#pragma once

#include "themes/Theme.h"

#include <string>

namespace corvel {

/// The rules that go behind a theme's style sheet on the screen. The web view draws check boxes and
/// scrollbars itself, and would draw light ones on a dark page; a box that cannot be clicked it
/// draws too faintly to be seen on most pages, here it has the colour of the text beside it. A page
/// begins level with the text it is made from, and each of its blocks in the direction of its own
/// writing; a word longer than a line is broken.
inline std::string screenRules(const Theme& theme) {
    return std::string(theme.appearance == Appearance::dark ? ":root { color-scheme: dark; }\n"
                                                            : "") +
           R"css(
#content > :first-child { margin-top: 0; }
body { overflow-wrap: break-word; }
p, li, h1, h2, h3, h4, h5, h6, th, td { unicode-bidi: plaintext; text-align: start; }
input[type="checkbox"]:disabled {
    appearance: none;
    box-sizing: border-box;
    width: 13px;
    height: 13px;
    border: 1.5px solid currentColor;
    border-radius: 3px;
    opacity: 0.8;
    vertical-align: -2px;
}
input[type="checkbox"]:disabled:checked { background-color: currentColor; }
input[type="checkbox"]:disabled:checked::before {
    content: "";
    display: block;
    width: 100%;
    height: 100%;
    background-color: var(--bg);
    clip-path: polygon(15% 48%, 4% 60%, 38% 94%, 97% 27%, 85% 15%, 38% 69%);
}
)css";
}

}  // namespace corvel
