#pragma once

#include "app/Session.h"
#include "export/LibraryExporter.h"
#include "ui/LongWorkNotice.h"
#include "ui/Toasts.h"
#include "ui/WorkBar.h"

#include <gtkmm/filechoosernative.h>
#include <gtkmm/window.h>

#include <filesystem>

namespace corvel {

/// The export of the whole library: choosing a place, progress with Cancel at the foot of the list,
/// and the news.
class LibraryExportFlow : public WorkBar {
public:
    LibraryExportFlow(Session& session, Toasts& toasts);

    void choosePlace();
    /// Into a new folder in `place`.
    void exportInto(const std::filesystem::path& place);
    void relabel();

private:
    Gtk::Window& window();
    void finished(const LibraryExportReport& report);
    void showFault(const LibraryExportReport& report);

    Session& m_session;
    Toasts& m_toasts;
    LibraryExporter m_exporter;
    LongWorkNotice m_notice;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
};

}  // namespace corvel
