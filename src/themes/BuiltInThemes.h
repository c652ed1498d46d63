#pragma once

#include "themes/Theme.h"

namespace corvel::themes {

// The themes made in code. Each is made at its first use and has an id of its own for this run.

const Theme& builtInLight();
const Theme& builtInDark();
const Theme& builtInSepia();

}  // namespace corvel::themes
