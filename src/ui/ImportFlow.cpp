#include "ui/ImportFlow.h"

#include "app/ExternalFile.h"
#include "app/Texts.h"
#include "app/texts/DataTexts.h"
#include "app/texts/ImportTexts.h"
#include "library/Notifications.h"
#include "platform/DistantVolumes.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"
#include "ui/ImportReportView.h"

#include <glibmm/convert.h>
#include <glibmm/main.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/filefilter.h>

#include <algorithm>
#include <array>
#include <utility>

namespace corvel {

namespace {

constexpr std::chrono::seconds kRefresh{1};
constexpr std::array kPatterns{"*.md", "*.markdown", "*.mdown", "*.mkd", "*.txt"};

bool isFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    return distantVolumes::answersFor(path) && std::filesystem::is_directory(path, ignored);
}

}  // namespace

ImportFlow::ImportFlow(Session& session, Toasts& toasts)
    : WorkBar([this] { m_session.importer.cancel(); }), m_session(session), m_toasts(toasts) {
    m_externalFiles = session.notifications.observe(
        notifications::importExternalFile, [this](const std::any& payload) {
            if (const auto* file = std::any_cast<ExternalFile>(&payload))
                importExternal(file->path);
        });
    relabel();
}

void ImportFlow::relabel() {
    setNames(m_session.texts(texts::importNotes), m_session.texts(texts::cancel));
}

Gtk::Window& ImportFlow::window() {
    return dynamic_cast<Gtk::Window&>(*get_root());
}

Glib::RefPtr<Gtk::FileChooserNative> ImportFlow::makeChooser(
    const Text& title, Gtk::FileChooser::Action action) const {
    const auto& texts = m_session.texts;
    auto& parent = dynamic_cast<Gtk::Window&>(*const_cast<ImportFlow*>(this)->get_root());
    auto chooser = Gtk::FileChooserNative::create(texts(title), parent, action,
                                                  texts(texts::importVerb), texts(texts::cancel));
    chooser->set_modal(true);
    return chooser;
}

void ImportFlow::choose(const Glib::RefPtr<Gtk::FileChooserNative>& chooser, Chosen chosen) {
    m_chooser = chooser;
    chooser->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        if (response == GTK_RESPONSE_ACCEPT) chosen(chosenFiles(*held));
    });
    chooser->show();
}

void ImportFlow::chooseFiles() {
    const auto chooser = makeChooser(texts::importFiles, Gtk::FileChooser::Action::OPEN);
    chooser->set_select_multiple(true);
    const auto markdown = Gtk::FileFilter::create();
    markdown->set_name(m_session.texts(texts::markdownFiles));
    for (const auto* pattern : kPatterns) {
        markdown->add_pattern(pattern);
    }
    const auto all = Gtk::FileFilter::create();
    all->set_name(m_session.texts(texts::allFiles));
    all->add_pattern("*");
    chooser->add_filter(markdown);
    chooser->add_filter(all);
    choose(chooser, [this](const auto& paths) { start(paths, false); });
}

void ImportFlow::chooseFolder() {
    choose(makeChooser(texts::importFolderTitle, Gtk::FileChooser::Action::SELECT_FOLDER),
           [this](const auto& paths) { askAboutFolders(paths); });
}

void ImportFlow::importPaths(const std::vector<std::filesystem::path>& paths) {
    if (std::any_of(paths.begin(), paths.end(), isFolder)) {
        askAboutFolders(paths);
    } else {
        start(paths, false);
    }
}

void ImportFlow::askAboutFolders(const std::vector<std::filesystem::path>& paths) {
    // Of what does not answer the report says so.
    if (std::none_of(paths.begin(), paths.end(), isFolder)) return start(paths, false);
    if (paths.size() == 1) {
        if (const auto manifest = LibraryManifest::in(paths.front()))
            return askAboutLibrary(paths.front(), *manifest);
    }
    const auto& texts = m_session.texts;
    auto* keep = Gtk::make_managed<Gtk::CheckButton>(texts(texts::keepSubfolders));
    keep->set_active(true);
    const auto folder = std::find_if(paths.begin(), paths.end(), isFolder);
    const auto name = (folder != paths.end() ? *folder : paths.front()).filename().string();
    ask(
        window(),
        {texts.format(texts::importFolderQuestion, {Glib::filename_display_name(name)}),
         texts(texts::importFolderDetail),
         {{"cancel", texts(texts::cancel)},
          {"import", texts(texts::importVerb), DialogAnswer::Look::suggested}},
         "import"},
        [this, keep, paths](const std::string& answer) {
            if (answer == "import") start(paths, keep->get_active());
        },
        keep);
}

// Files come one by one: they are imported together, with their images and under one report, once
// no more follow.
void ImportFlow::importExternal(const std::filesystem::path& path) {
    m_external.push_back(path);
    if (m_externalStart.connected()) return;
    m_externalStart = Glib::signal_idle().connect(
        [this] {
            if (!m_session.importer.isRunning()) start(std::exchange(m_external, {}), false);
            return false;
        },
        Glib::PRIORITY_LOW);
}

void ImportFlow::askAboutLibrary(const std::filesystem::path& library,
                                 const LibraryManifest& manifest) {
    const auto& texts = m_session.texts;
    const auto name = Glib::filename_display_name(library.filename().string()).raw();
    const auto notes = texts.notes(static_cast<std::int64_t>(manifest.noteCount));
    ask(window(),
        {texts.format(texts::importLibraryQuestion, {name}),
         texts.format(texts::importLibraryDetail, {notes}),
         {{"cancel", texts(texts::cancel)},
          {"import", texts(texts::importVerb), DialogAnswer::Look::suggested}},
         "import"},
        [this, library](const std::string& answer) {
            if (answer == "import") start({library}, true);
        });
}

void ImportFlow::start(const std::vector<std::filesystem::path>& paths, bool keepFolders) {
    if (paths.empty()) return;
    if (m_session.importer.isRunning()) {
        m_toasts.show(m_session.texts(texts::importBusy));
        return;
    }
    ImportOptions options{.keepFolders = keepFolders, .intoFolder = {}};
    const auto& filter = m_session.state.sidebarFilter.get();
    if (filter.kind == SidebarFilter::Kind::folder) options.intoFolder = filter.folderID;
    m_fillsEmptyList = m_session.list.noteCount() == 0;
    m_lastShown = std::chrono::steady_clock::now();
    showProgress(0, 0);
    m_session.importer.start(
        paths, options, [this](std::size_t done, std::size_t found) { showProgress(done, found); },
        [this](const ImportReport& report) { finished(report); });
}

void ImportFlow::showProgress(std::size_t done, std::size_t found) {
    const auto& texts = m_session.texts;
    if (done == 0) {
        showWork(texts.format(texts::findingFiles, {std::to_string(found)}), std::nullopt);
    } else {
        showWork(texts.format(texts::importing, {std::to_string(done), std::to_string(found)}),
                 static_cast<double>(done) / static_cast<double>(found));
    }
    if (m_fillsEmptyList) showWhatIsThere();
}

// A list that was empty says otherwise that there are no notes. One that is read is left alone
// until the end: it would jump.
void ImportFlow::showWhatIsThere() {
    const auto now = std::chrono::steady_clock::now();
    if (now - m_lastShown < kRefresh) return;
    m_lastShown = now;
    m_session.notifications.post(notifications::folderDidChange);
}

void ImportFlow::finished(const ImportReport& report) {
    workEnded();
    const auto& texts = m_session.texts;
    const auto notes = texts.notes(static_cast<std::int64_t>(report.imported));
    auto title =
        texts.format(report.wasCancelled ? texts::importCancelled : texts::imported, {notes});
    if (!report.wasCancelled && report.unchanged != 0) {
        title = texts.format(texts::importUnchanged, {notes, std::to_string(report.unchanged)});
    }
    if (!report.skipped.empty()) {
        title =
            texts.format(texts::importWithSkipped, {title, std::to_string(report.skipped.size())});
    }
    if (report.skipped.empty() && report.missingImages.empty() && !report.wasCancelled) {
        m_toasts.show(title);
    } else {
        m_toasts.show(title, texts(texts::details), [this, report] { showReport(report); });
    }
    m_session.notifications.post(notifications::folderDidChange);
    // The new notes are shown even when what the list holds would not.
    if (report.lastNoteID) m_session.reveal(*report.lastNoteID);
    if (!m_external.empty()) start(std::exchange(m_external, {}), false);
}

void ImportFlow::showReport(const ImportReport& report) {
    const auto& texts = m_session.texts;
    auto summary =
        texts.format(texts::imported, {texts.notes(static_cast<std::int64_t>(report.imported))});
    if (report.wasCancelled) {
        summary +=
            "\n" + texts.format(texts::importNotReached, {std::to_string(report.notReached)});
    }
    const bool hasLists = !report.skipped.empty() || !report.missingImages.empty();
    ask(
        window(), {texts(texts::importReport), summary, {{"close", texts(texts::close)}}},
        [](const std::string&) {}, hasLists ? makeImportReportView(report, texts) : nullptr);
}

}  // namespace corvel
