#pragma once

#include <gtkmm/widget.h>

#include <string>
#include <vector>

namespace corvel {

/// Lines of a report under a heading: what it is about and, below, why; either may be empty.
struct ReportSection {
    struct Line {
        std::string name;
        std::string reason;
    };
    std::string heading;
    std::vector<Line> lines;
};

/// The part of a dialog that lists what a job passed over; scrolls when there is much. Sections
/// without lines are left out.
Gtk::Widget* makeReportView(const std::vector<ReportSection>& sections);

}  // namespace corvel
