#include "ui/ExportSheet.h"

#include "app/Texts.h"
#include "app/texts/DesktopTexts.h"
#include "export/ExportTexts.h"
#include "ui/Accessible.h"
#include "ui/Adw.h"
#include "ui/TextScale.h"

#include <gdk/gdkkeysyms.h>
#include <glibmm/main.h>
#include <gtkmm/box.h>
#include <gtkmm/eventcontrollerkey.h>

#include <chrono>
#include <filesystem>
#include <utility>

namespace corvel {

namespace {

constexpr int kWidth = 440;
constexpr std::chrono::milliseconds kPatience{500};  // shorter work needs no progress bar
constexpr std::chrono::milliseconds kPulse{120};

}  // namespace

void ExportSheet::show(Gtk::Window& parent,
                       Session& session,
                       Toasts& toasts,
                       ExportSession::ExporterMaker makeExporter,
                       std::vector<Uuid> noteIDs) {
    if (noteIDs.empty()) return;
    const auto fetch = [&session](const Uuid& id) {
        const auto open = session.editor.current();  // with what the store may not have yet
        return open && open->id == id ? open : session.library.notes.fetchNote(id);
    };
    const auto only = noteIDs.size() == 1 ? fetch(noteIDs.front()) : std::nullopt;
    auto work = std::make_unique<ExportSession>(session.themes, session.texts,
                                                std::move(makeExporter), fetch, std::move(noteIDs));
    // Owned by its window: it goes when that is closed.
    auto* sheet = new ExportSheet(parent, session, toasts, std::move(work));
    sheet->m_name.set_text(only ? only->title : "");
    sheet->m_name.set_visible(only && !only->title.empty());
    sheet->m_window.present();
    sheet->m_rows.child_focus(Gtk::DirectionType::TAB_FORWARD);
}

ExportSheet::ExportSheet(Gtk::Window& parent,
                         Session& session,
                         Toasts& toasts,
                         std::unique_ptr<ExportSession> work)
    : m_session(session)
    , m_toasts(toasts)
    , m_work(std::move(work))
    , m_rows(m_work->options, session.texts)
    , m_notice(session.texts) {
    m_window.set_transient_for(parent);
    m_window.set_modal(true);
    m_window.set_resizable(false);
    m_window.set_default_size(widthForText(kWidth), -1);
    build();
    connect();
    relabel();
    follow();
}

ExportSheet::~ExportSheet() {
    m_session.state.isExportSheetPresented.set(false);
}

void ExportSheet::build() {
    auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    buildHeader(content);
    auto& body = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 16);
    body.set_margin(24);
    body.set_margin_top(16);
    m_error.add_css_class("error");
    m_error.set_wrap(true);
    m_error.set_xalign(0);
    m_error.set_selectable(true);
    m_error.set_max_width_chars(40);
    auto& progress = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 8);
    m_progressText.set_xalign(0);
    m_progressText.add_css_class("dim-label");
    progress.append(m_progressText);
    progress.append(m_bar);
    m_progress.set_child(progress);
    for (Gtk::Widget* part :
         {static_cast<Gtk::Widget*>(&m_rows), static_cast<Gtk::Widget*>(&m_progress),
          static_cast<Gtk::Widget*>(&m_error)}) {
        body.append(*part);
    }
    content.append(body);
    m_window.set_child(content);
    m_window.set_default_widget(m_export);
}

void ExportSheet::buildHeader(Gtk::Box& content) {
    adw::HeaderBar header;
    header.setWindowControls(false, false);
    m_export.add_css_class("suggested-action");
    m_title.add_css_class("title");
    m_title.set_ellipsize(Pango::EllipsizeMode::END);
    m_name.add_css_class("caption");
    m_name.add_css_class("dim-label");
    m_name.set_ellipsize(Pango::EllipsizeMode::END);
    auto& titles = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    titles.set_valign(Gtk::Align::CENTER);
    titles.append(m_title);
    titles.append(m_name);
    header.setTitle(titles);
    header.packStart(m_cancel);
    header.packEnd(m_export);
    content.append(header.widget());
    // The header bar in the content is the window's own.
    auto& empty = *Gtk::make_managed<Gtk::Box>();
    empty.set_visible(false);
    m_window.set_titlebar(empty);
}

void ExportSheet::connect() {
    m_work->signalChanged().connect([this] { follow(); });
    m_work->signalReady().connect([this] {
        tellReady();
        askForPlace();
    });
    m_work->signalFinished().connect([this] { finished(); });
    m_export.signal_clicked().connect([this] { begin(); });
    m_cancel.signal_clicked().connect([this] { m_window.close(); });
    m_window.signal_close_request().connect([this] { return close(); }, false);
    m_preferences = m_session.preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "appLanguage") relabel();
    });
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) {
            if (key == GDK_KEY_Escape) m_window.close();
            return key == GDK_KEY_Escape;
        },
        false);
    m_window.add_controller(keys);
}

void ExportSheet::relabel() {
    const auto& say = m_session.texts;
    const std::string title =
        m_work->hasSeveral()
            ? say.format(texts::exportNotes, {say.notes(static_cast<int>(m_work->count()))})
            : say(texts::exportNote);
    m_window.set_title(title);
    m_title.set_text(title);
    m_cancel.set_label(say(texts::cancel));
    m_export.set_label(say(texts::exportVerb));
    setAccessibleLabel(m_bar, say(texts::exportRunning));
    m_rows.relabel();
    followProgress();
}

void ExportSheet::follow() {
    const bool isBusy = m_work->isExporting();
    m_rows.set_sensitive(!isBusy);
    m_export.set_sensitive(!isBusy);
    m_error.set_text(m_work->errorMessage());
    m_error.set_visible(!m_work->errorMessage().empty());
    followProgress();
    if (isBusy && !m_patience.connected() && !m_progress.get_reveal_child()) {
        m_patience = Glib::signal_timeout().connect(
            [this] {
                m_progress.set_reveal_child(true);
                return false;
            },
            static_cast<unsigned>(kPatience.count()));
    } else if (!isBusy) {
        m_patience.disconnect();
        m_pulse.disconnect();
        m_progress.set_reveal_child(false);
    }
}

void ExportSheet::followProgress() {
    const auto& say = m_session.texts;
    if (!m_work->isExporting()) return;
    if (m_work->hasSeveral()) {
        m_progressText.set_text(
            say.format(texts::exportProgress,
                       {std::to_string(m_work->doneCount() + 1), std::to_string(m_work->count())}));
        m_bar.set_fraction(static_cast<double>(m_work->doneCount()) /
                           static_cast<double>(m_work->count()));
        return;
    }
    m_progressText.set_text(say(texts::exportRunning));
    if (m_pulse.connected()) return;
    m_pulse = Glib::signal_timeout().connect(
        [this] {
            m_bar.pulse();
            return true;
        },
        static_cast<unsigned>(kPulse.count()));
}

void ExportSheet::begin() {
    if (m_work->hasSeveral()) {
        askForFolder();
    } else {
        m_notice.start();
        m_work->start();
    }
}

void ExportSheet::openChooser(Gtk::FileChooser::Action action,
                              const Text& title,
                              std::function<void(const std::string& path)> chosen) {
    const auto& say = m_session.texts;
    const bool isFolder = action == Gtk::FileChooser::Action::SELECT_FOLDER;
    m_chooser = Gtk::FileChooserNative::create(
        say(title), m_window, action, say(isFolder ? texts::exportVerb : texts::exportSave),
        say(texts::cancel));
    m_chooser->set_modal(true);
    m_chooser->set_create_folders(true);
    m_chooser->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        const auto file = held->get_file();
        if (response == GTK_RESPONSE_ACCEPT && file) chosen(file->get_path());
    });
}

void ExportSheet::askForPlace() {
    openChooser(Gtk::FileChooser::Action::SAVE, texts::exportNote, [this](const std::string& path) {
        m_place = std::filesystem::path(path).filename();
        m_work->write(path);
    });
    m_chooser->set_current_name(m_work->suggestedName());
    m_chooser->show();
}

void ExportSheet::askForFolder() {
    openChooser(Gtk::FileChooser::Action::SELECT_FOLDER, texts::exportChooseFolder,
                [this](const std::string& path) {
                    m_place = m_session.texts.notes(static_cast<int>(m_work->count()));
                    m_folder = path;
                    m_notice.start();
                    m_work->startInto(path);
                });
    m_chooser->show();
}

void ExportSheet::tellReady() const {
    const auto& say = m_session.texts;
    m_notice.ended(say(texts::exportWaits),
                   say.format(texts::exportWaitsDetail, {m_work->suggestedName()}));
}

void ExportSheet::finished() {
    const auto& say = m_session.texts;
    const auto news = say.format(texts::exportDone, {m_place});
    m_toasts.show(news);
    if (!m_folder.empty()) m_notice.ended(say(texts::exportEnded), news, m_folder);
    m_window.close();
}

// Closing ends what runs. The sheet goes when the call that closed it has returned; it may be asked
// again before.
bool ExportSheet::close() {
    m_work->cancel();
    m_chooser.reset();
    m_window.hide();
    if (!std::exchange(m_isClosed, true)) {
        Glib::signal_idle().connect_once([this] { delete this; });
    }
    return true;
}

}  // namespace corvel
