#pragma once

#include "export/ExportOptions.h"

#include <string>
#include <string_view>

namespace corvel {

/// The page that is printed. The rule for its margins also names the running title and number,
/// which the web view does not draw: they are added to the finished file.
std::string printPage(PageSize size,
                      std::string_view title,
                      std::string_view css,
                      std::string_view body);

/// The style sheet of a page without the theme's.
std::string_view plainPrintStylesheet();

}  // namespace corvel
