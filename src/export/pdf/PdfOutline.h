#pragma once

#include "export/pdf/Qpdf.h"

#include <string>
#include <vector>

namespace corvel {

struct OutlineItem {
    std::string title;
    int level = 1;  ///< 1 to 6; levels may be left out on the way down
    QPDFObjectHandle destination;
};

/// Gives `pdf` an outline that nests `items` by their levels, open, in order.
void addOutline(QPDF& pdf, const std::vector<OutlineItem>& items);

}  // namespace corvel
