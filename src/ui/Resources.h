#pragma once

namespace corvel {

/// Makes the program's own icons known to GTK. A static library's resources do not register
/// themselves.
void registerResources();

}  // namespace corvel
