#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// The complete document around a body: the caller's style sheet, a readable width, and a script
/// that scrolls to in-page anchors.
std::string fullPage(std::string_view title, std::string_view css, std::string_view body);

}  // namespace corvel
