#pragma once

namespace corvel {

/// Makes the program's own icons known to GTK and loads the rules of shape and spacing; colours are
/// the theme's. A static library's resources do not register themselves.
void registerResources();

}  // namespace corvel
