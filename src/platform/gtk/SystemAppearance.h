#pragma once

namespace corvel {

/// Whether the desktop asks for a dark appearance. Needs libadwaita to be initialised, and its
/// color scheme not to be forced yet.
bool isSystemDark();

}  // namespace corvel
