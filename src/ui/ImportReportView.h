#pragma once

#include "app/settings/Localisation.h"
#include "library/MarkdownImporter.h"

#include <gtkmm/widget.h>

namespace corvel {

/// A scrolling list of what an import left out and why, to be placed in a dialog.
Gtk::Widget* makeImportReportView(const ImportReport& report, const Localisation& texts);

}  // namespace corvel
