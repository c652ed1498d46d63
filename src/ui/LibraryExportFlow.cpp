#include "ui/LibraryExportFlow.h"

#include "app/Texts.h"
#include "app/texts/DataTexts.h"
#include "app/texts/DesktopTexts.h"
#include "platform/DistantVolumes.h"
#include "platform/LocalDay.h"
#include "platform/Log.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"

#include <glibmm/convert.h>

#include <string>
#include <utility>

namespace corvel {

namespace {

// A name of its own in that place: an export never goes among other files.
std::filesystem::path freeFolderIn(const std::filesystem::path& place, const std::string& day) {
    const std::string name = std::string(texts::programName.english) + " " + day;
    auto folder = place / name;
    if (!distantVolumes::answersFor(place)) return folder;  // the export says so
    std::error_code ignored;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(folder, ignored));
         ++number)
        folder = place / (name + " " + std::to_string(number));
    return folder;
}

const Text& reasonText(LibraryExportFault fault) {
    switch (fault) {
        case LibraryExportFault::occupied:
            return texts::exportFaultOccupied;
        case LibraryExportFault::gone:
            return texts::exportFaultGone;
        case LibraryExportFault::noAnswer:
            return texts::exportFaultSilent;
        case LibraryExportFault::diskFull:
            return texts::exportFaultFull;
        case LibraryExportFault::notWritable:
            return texts::exportFaultNotWritable;
        case LibraryExportFault::storeFailed:
            return texts::exportFaultStore;
        case LibraryExportFault::failed:
            break;
    }
    return texts::exportFaultOther;
}

}  // namespace

LibraryExportFlow::LibraryExportFlow(Session& session, Toasts& toasts)
    : WorkBar([this] { m_exporter.cancel(); })
    , m_session(session)
    , m_toasts(toasts)
    , m_exporter(session.library)
    , m_notice(session.texts) {
    relabel();
}

void LibraryExportFlow::relabel() {
    setNames(m_session.texts(texts::exportLibraryName), m_session.texts(texts::cancel));
}

Gtk::Window& LibraryExportFlow::window() {
    return dynamic_cast<Gtk::Window&>(*get_root());
}

void LibraryExportFlow::choosePlace() {
    const auto& say = m_session.texts;
    if (m_exporter.isRunning()) return m_toasts.show(say(texts::exportLibraryBusy));
    m_chooser = Gtk::FileChooserNative::create(say(texts::exportLibraryTitle), window(),
                                               Gtk::FileChooser::Action::SELECT_FOLDER,
                                               say(texts::exportLibraryVerb), say(texts::cancel));
    m_chooser->set_modal(true);
    m_chooser->set_create_folders(true);
    m_chooser->signal_response().connect([this](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        const auto chosen = chosenFiles(*held);
        if (response == GTK_RESPONSE_ACCEPT && !chosen.empty()) exportInto(chosen.front());
    });
    m_chooser->show();
}

void LibraryExportFlow::exportInto(const std::filesystem::path& place) {
    const auto& say = m_session.texts;
    if (m_exporter.isRunning()) return m_toasts.show(say(texts::exportLibraryBusy));
    m_session.editor.save();
    const auto progress = [this](std::size_t done, std::size_t all) {
        showWork(m_session.texts.format(texts::exportLibraryRunning,
                                        {std::to_string(done), std::to_string(all)}),
                 all == 0 ? 0.0 : static_cast<double>(done) / static_cast<double>(all));
    };
    showWork(say(texts::exportLibraryName), 0);
    m_notice.start();
    m_exporter.start(freeFolderIn(place, localDay(Date::now())), say(texts::exportLibraryTrash),
                     progress, [this](const auto& report) { finished(report); });
}

void LibraryExportFlow::finished(const LibraryExportReport& report) {
    workEnded();
    if (report.wasCancelled) return;
    if (report.fault) return showFault(report);
    const auto& say = m_session.texts;
    const auto notes = say.notes(static_cast<std::int64_t>(report.notes));
    const auto name = Glib::filename_display_name(report.folder.filename().string()).raw();
    const auto news = report.missingAttachments.empty()
                          ? say.format(texts::exportLibraryDone, {notes, name})
                          : say.format(texts::exportLibraryMissing,
                                       {notes, std::to_string(report.missingAttachments.size())});
    for (const auto& missing : report.missingAttachments)
        logLine("Error exporting attachment without data: " + missing);
    m_toasts.show(news, say(texts::exportLibraryShow),
                  [folder = report.folder] { openInDesktop(folder); });
    m_notice.ended(say(texts::exportEnded), news, report.folder);
}

void LibraryExportFlow::showFault(const LibraryExportReport& report) {
    logLine("Error exporting library: " + report.detail);
    const auto& say = m_session.texts;
    ask(window(),
        {say(texts::exportLibraryFailed),
         say(reasonText(*report.fault)),
         {{"close", say(texts::close)},
          {"again", say(texts::exportLibraryAgain), DialogAnswer::Look::suggested}}},
        [this](const std::string& answer) {
            if (answer == "again") choosePlace();
        });
}

}  // namespace corvel
