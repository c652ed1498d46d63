#include "ui/ImportReportView.h"

#include "app/Texts.h"

#include <glibmm/convert.h>
#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/scrolledwindow.h>

#include <string>

namespace corvel {

namespace {

/// More lines than this help nobody and would make the dialog slow.
constexpr std::size_t kShown = 200;
constexpr int kWidth = 400;
constexpr int kHeight = 320;

const Text& reasonText(ImportFault fault) {
    switch (fault) {
        case ImportFault::notText:
            return texts::faultNotText;
        case ImportFault::notAFile:
            return texts::faultNotAFile;
        case ImportFault::storeFailed:
            return texts::faultStore;
        case ImportFault::unreadable:
            break;
    }
    return texts::faultUnreadable;
}

// One line each: of a long path its folder gives way, not the file's name.
void appendLine(Gtk::Box& box, const std::string& text, const char* style) {
    auto* label = Gtk::make_managed<Gtk::Label>(text);
    label->set_xalign(0);
    label->set_ellipsize(Pango::EllipsizeMode::START);
    label->set_tooltip_text(text);
    label->add_css_class(style);
    box.append(*label);
}

void appendRest(Gtk::Box& box, std::size_t count) {
    if (count > kShown) appendLine(box, "… +" + std::to_string(count - kShown), "dim-label");
}

}  // namespace

Gtk::Widget* makeImportReportView(const ImportReport& report, const Localisation& texts) {
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    if (!report.skipped.empty()) appendLine(*box, texts(texts::importSkipped), "heading");
    for (std::size_t i = 0; i < std::min(report.skipped.size(), kShown); ++i) {
        const auto& skipped = report.skipped[i];
        appendLine(*box,
                   Glib::filename_display_name(skipped.path.string()).raw() + ": " +
                       texts(reasonText(skipped.reason)),
                   "body");
    }
    appendRest(*box, report.skipped.size());
    if (!report.missingImages.empty()) {
        appendLine(*box, texts(texts::importMissingImages), "heading");
    }
    for (std::size_t i = 0; i < std::min(report.missingImages.size(), kShown); ++i) {
        appendLine(*box, Glib::filename_display_name(report.missingImages[i].string()), "body");
    }
    appendRest(*box, report.missingImages.size());
    auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_propagate_natural_height(true);
    scroller->set_max_content_height(kHeight);
    scroller->set_min_content_width(kWidth);
    scroller->set_child(*box);
    return scroller;
}

}  // namespace corvel
