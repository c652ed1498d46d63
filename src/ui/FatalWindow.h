#pragma once

#include <string_view>

namespace corvel {

/// Shows why the program cannot go on and returns when the user has closed the window; returns at
/// once without a display.
void showFatalWindow(std::string_view message);

}  // namespace corvel
