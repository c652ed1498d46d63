#pragma once

#include "platform/PrintView.h"

#include <string>

namespace corvel {

/// A PDF of empty sheets with `header` in the upper margin, shortened with an ellipsis where it is
/// wider than the text below it, and the page's number in the lower one.
std::string runningLines(int pages, const PaperSize& paper, const std::string& header);

}  // namespace corvel
