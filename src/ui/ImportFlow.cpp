#include "ui/ImportFlow.h"

#include "app/Texts.h"
#include "library/Notifications.h"
#include "ui/Accessible.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"
#include "ui/ImportReportView.h"

#include <glibmm/convert.h>
#include <glibmm/main.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/filefilter.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace corvel {

namespace {

/// Work shorter than this is not worth a progress bar.
constexpr std::chrono::milliseconds kPatience{500};
constexpr std::array kPatterns{"*.md", "*.markdown", "*.mdown", "*.mkd", "*.txt"};

bool isFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

}  // namespace

ImportFlow::ImportFlow(Session& session, Toasts& toasts) : m_session(session), m_toasts(toasts) {
    set_transition_type(Gtk::RevealerTransitionType::SLIDE_UP);
    auto* box = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
    box->add_css_class("toolbar");
    auto* column = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
    column->set_hexpand(true);
    column->set_valign(Gtk::Align::CENTER);
    column->set_margin_start(8);
    m_label.set_xalign(0);
    m_label.set_ellipsize(Pango::EllipsizeMode::END);
    m_label.add_css_class("caption");
    column->append(m_label);
    column->append(m_bar);
    box->append(*column);
    box->append(m_cancel);
    set_child(*box);
    m_cancel.signal_clicked().connect([this] { m_session.importer.cancel(); });
    relabel();
}

void ImportFlow::relabel() {
    m_cancel.set_label(m_session.texts(texts::cancel));
    setAccessibleLabel(m_bar, m_session.texts(texts::importNotes));
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
    if (paths.empty()) return;
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
          {"import", texts(texts::importVerb), DialogAnswer::Look::suggested}}},
        [this, keep, paths](const std::string& answer) {
            if (answer == "import") start(paths, keep->get_active());
        },
        keep);
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
    showProgress(0, paths.size());
    m_reveal = Glib::signal_timeout().connect(
        [this] {
            set_reveal_child(true);
            return false;
        },
        static_cast<unsigned>(kPatience.count()));
    m_session.importer.start(
        paths, options, [this](std::size_t done, std::size_t found) { showProgress(done, found); },
        [this](const ImportReport& report) { finished(report); });
}

void ImportFlow::showProgress(std::size_t done, std::size_t found) {
    m_label.set_text(
        m_session.texts.format(texts::importing, {std::to_string(done), std::to_string(found)}));
    m_bar.set_fraction(found == 0 ? 0.0 : static_cast<double>(done) / static_cast<double>(found));
}

void ImportFlow::finished(const ImportReport& report) {
    m_reveal.disconnect();
    set_reveal_child(false);
    const auto& texts = m_session.texts;
    const auto title =
        texts.format(texts::imported, {texts.notes(static_cast<std::int64_t>(report.imported))});
    if (report.skipped.empty() && report.missingImages.empty()) {
        m_toasts.show(title);
    } else {
        m_toasts.show(title, texts(texts::details), [this, report] { showReport(report); });
    }
    m_session.notifications.post(notifications::folderDidChange);
    // The new notes are shown even when what the list holds would not.
    if (report.lastNoteID) m_session.reveal(*report.lastNoteID);
}

void ImportFlow::showReport(const ImportReport& report) {
    const auto& texts = m_session.texts;
    const auto summary =
        texts.format(texts::imported, {texts.notes(static_cast<std::int64_t>(report.imported))});
    ask(
        window(), {texts(texts::importReport), summary, {{"close", texts(texts::close)}}},
        [](const std::string&) {}, makeImportReportView(report, texts));
}

}  // namespace corvel
