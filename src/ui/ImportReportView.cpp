#include "ui/ImportReportView.h"

#include "app/Texts.h"
#include "app/texts/DesktopTexts.h"
#include "ui/ReportView.h"

#include <glibmm/convert.h>

#include <string>

namespace corvel {

namespace {

const Text& reasonText(ImportFault fault) {
    switch (fault) {
        case ImportFault::noAnswer:
            return texts::openFaultSilent;
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

}  // namespace

Gtk::Widget* makeImportReportView(const ImportReport& report, const Localisation& texts) {
    ReportSection skipped{texts(texts::importSkipped), {}};
    for (const auto& file : report.skipped) {
        skipped.lines.push_back(
            {Glib::filename_display_name(file.path.string()), texts(reasonText(file.reason))});
    }
    ReportSection images{texts(texts::importMissingImages), {}};
    for (const auto& image : report.missingImages) {
        images.lines.push_back({Glib::filename_display_name(image.string()), {}});
    }
    return makeReportView({skipped, images});
}

}  // namespace corvel
