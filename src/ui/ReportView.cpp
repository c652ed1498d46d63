#include "ui/ReportView.h"

#include "ui/Accessible.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

#include <algorithm>

namespace corvel {

namespace {

/// More lines than this help nobody and would make the dialog slow.
constexpr std::size_t kShown = 200;
constexpr int kWidth = 440;
constexpr int kHeight = 320;
constexpr int kBetweenSections = 8;

void appendLabel(Gtk::Box& box,
                 const std::string& text,
                 const char* style,
                 Pango::EllipsizeMode shortened) {
    if (text.empty()) return;
    auto* label = Gtk::make_managed<Gtk::Label>(text);
    label->set_xalign(0);
    label->set_ellipsize(shortened);
    label->set_tooltip_text(text);
    label->add_css_class(style);
    box.append(*label);
}

// Of a long path its folder gives way, not the file's name.
void appendLine(Gtk::Box& box, const ReportSection::Line& line) {
    auto* lines = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    appendLabel(*lines, line.name, "body", Pango::EllipsizeMode::START);
    appendLabel(*lines, line.reason, "dim-label", Pango::EllipsizeMode::END);
    box.append(*lines);
}

void appendSection(Gtk::Box& box, const ReportSection& section) {
    if (section.lines.empty()) return;
    const bool isFirst = box.get_first_child() == nullptr;
    appendLabel(box, section.heading, "heading", Pango::EllipsizeMode::END);
    if (!isFirst) box.get_last_child()->set_margin_top(kBetweenSections);
    const std::size_t shown = std::min(section.lines.size(), kShown);
    for (std::size_t i = 0; i < shown; ++i) {
        appendLine(box, section.lines[i]);
    }
    const std::size_t rest = section.lines.size() - shown;
    if (rest > 0) appendLine(box, {{}, "… +" + std::to_string(rest)});
}

}  // namespace

Gtk::Widget* makeReportView(const std::vector<ReportSection>& sections) {
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
    box->set_size_request(kWidth);
    for (const auto& section : sections) {
        appendSection(*box, section);
    }
    auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height(true);
    scroller->set_max_content_height(kHeight);
    scroller->set_child(*box);
    // The focus is here, for the arrow keys.
    if (!sections.empty()) setAccessibleLabel(*scroller, sections.front().heading);
    return scroller;
}

}  // namespace corvel
