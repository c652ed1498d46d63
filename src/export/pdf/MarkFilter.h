#pragma once

#include "export/pdf/PageMarks.h"
#include "export/pdf/Qpdf.h"

#include <vector>

namespace corvel {

/// Where a mark lies on a page, in points from the lower left corner.
struct MarkPlace {
    int mark = 0;
    int page = 0;
    QPDFObjectHandle::Rectangle area;
};

/// Finds the coloured rectangles of marks in a page's content, and takes them out of it.
class MarkFilter {
public:
    MarkFilter(const MarkColors& colors, int markCount, std::vector<MarkPlace>& places)
        : m_colors(colors), m_markCount(markCount), m_places(places) {}

    void filterPage(QPDFObjectHandle page, int number);

private:
    void filterStream(QPDFObjectHandle stream,
                      QPDFObjectHandle resources,
                      const QPDFMatrix& matrix,
                      int depth);

    MarkColors m_colors;
    int m_markCount;
    std::vector<MarkPlace>& m_places;
    int m_page = 0;
};

}  // namespace corvel
