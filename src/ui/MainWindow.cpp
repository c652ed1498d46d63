#include "ui/MainWindow.h"

#include "app/Texts.h"
#include "app/texts/StoreTexts.h"
#include "library/Notifications.h"
#include "ui/AboutWindow.h"
#include "ui/Adw.h"
#include "ui/Dialogs.h"
#include "ui/ExportSheet.h"
#include "ui/FilePaths.h"
#include "ui/RecoveryToasts.h"
#include "ui/ShortcutsWindow.h"
#include "ui/UpdateDialog.h"

#include <glibmm/main.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr int kWidth = 1320;
constexpr int kHeight = 860;
constexpr int kSmallestWidth = 720;
constexpr int kSmallestHeight = 480;

constexpr const char* kWidthKey = "windowWidth";
constexpr const char* kHeightKey = "windowHeight";
constexpr const char* kMaximizedKey = "windowMaximized";
constexpr const char* kAssistantKey = "assistantVisible";

enum Pane { sidebarPane, listPane, notePane, assistantPane, paneCount };

}  // namespace

MainWindow::MainWindow(Session& session, Gtk::Application& application)
    : m_session(session)
    , m_window(adw::applicationWindow(application.gobj()))
    , m_hold(GTK_WINDOW(g_object_ref(m_window.gobj())))
    , m_menus(session)
    , m_actions(session, application, m_window)
    , m_sidebar(*Gtk::make_managed<SidebarPane>(session, m_menus))
    , m_list(*Gtk::make_managed<NoteListPane>(session, m_menus, m_toasts))
    , m_note(*Gtk::make_managed<NotePane>(
          session,
          LinkedFileBar::Callbacks{.compare = [this] { m_linkedFiles.compare(); },
                                   .locate = [this] { m_linkedFiles.locate(); },
                                   .saveAgain = [this] { m_linkedFiles.saveAgain(); },
                                   .saveElsewhere = [this] { m_linkedFiles.saveAs(); },
                                   .giveFocus = [this] { m_note.focusEditor(); }}))
    , m_import(*Gtk::make_managed<ImportFlow>(session, m_toasts))
    , m_linkedFiles(
          session, m_window, m_toasts, [this](const FilePaths& paths) { importPaths(paths); })
    , m_opening(session, m_window, m_toasts, m_import)
    , m_libraryExport(*Gtk::make_managed<LibraryExportFlow>(session, m_toasts))
    , m_images(session, m_toasts, m_note.editor().textView())
    , m_mail(session, m_toasts)
    , m_exporters(session)
    , m_pages(session,
              m_window,
              [this](const std::filesystem::path& path) {
                  m_window.present();
                  importPaths({path});
              })
    , m_layout(session.preferences.store(), m_sidebar, m_list, m_note)
    , m_palette(*Gtk::make_managed<PaletteView>(session,
                                                [this](const auto& target) { choose(target); })) {
    m_list.append(m_import);
    m_list.append(m_libraryExport);
    m_toasts.setChild(m_layout.widget());
    auto& overlay = *Gtk::make_managed<Gtk::Overlay>();
    overlay.set_child(m_toasts.widget());
    overlay.add_overlay(m_palette);
    adw::setContent(m_window, overlay);
    m_window.set_size_request(kSmallestWidth, kSmallestHeight);
    showIcon();
    restoreSize();
    followWidth();
    buildDrop();
    connect();
    labelFrame();
    showSidebarButton();
    m_menuKey = std::make_unique<MainMenuKey>(m_window, m_menus.primary(),
                                              [this] { return placeOfMenu(); });
    m_session.state.isAIAssistantVisible.set(
        m_session.preferences.store().boolean(kAssistantKey).value_or(false));
}

MainWindow::~MainWindow() {
    m_menuKey.reset();
    gtk_window_destroy(m_hold.get());
}

// It is drawn in several sizes, for window switchers: the second tick follows the first frame.
void MainWindow::showIcon() {
    m_window.add_tick_callback([this, isFirst = true](const auto&) mutable {
        if (std::exchange(isFirst, false)) return true;
        m_window.set_icon_name("com.qno.corvel");
        return false;
    });
}

void MainWindow::restoreSize() {
    const auto& store = m_session.preferences.store();
    m_window.set_default_size(
        std::max(store.integer(kWidthKey).value_or(kWidth), kSmallestWidth),
        std::max(store.integer(kHeightKey).value_or(kHeight), kSmallestHeight));
    if (store.boolean(kMaximizedKey).value_or(false)) m_window.maximize();
}

void MainWindow::remember() {
    auto& store = m_session.preferences.store();
    int width = 0;
    int height = 0;
    m_window.get_default_size(width, height);
    store.setInteger(kWidthKey, width);
    store.setInteger(kHeightKey, height);
    store.setBoolean(kMaximizedKey, m_window.is_maximized());
    store.setBoolean(kAssistantKey, m_session.state.isAIAssistantVisible.get());
    m_layout.remember();
    m_note.rememberScroll();
}

// Panes must not come or go while the window is being laid out, so that is done right after.
void MainWindow::followWidth() {
    const auto arrange = [this] {
        m_arrange = Glib::signal_idle().connect(
            [this] {
                keepFocus([this] {
                    m_layout.setAvailableWidth(m_layout.widget().get_width());
                    m_layout.refit();
                });
                return false;
            },
            Glib::PRIORITY_HIGH_IDLE);
    };
    m_connections.emplace_back(m_session.state.selectedNoteID.signalChanged().connect(arrange));
    m_window.signal_realize().connect([this, arrange] {
        // Not before all that is shown at first is there to be measured.
        m_layout.setAvailableWidth(m_window.property_default_width());
        adw::connect(m_window.get_surface()->gobj(), "notify::width", arrange);
    });
}

void MainWindow::buildDrop() {
    m_window.add_controller(fileDropTarget([this](const FilePaths& paths) { openFiles(paths); }));
}

void MainWindow::connect() {
    m_window.signal_close_request().connect([this] { return closeRequested(); }, false);
    m_window.property_is_active().signal_changed().connect([this] {
        if (!m_window.is_active()) {
            m_session.editor.save();
        } else {
            m_session.linkedFile.check();
        }
    });
    m_toasts.undoByKey(m_window, m_session.texts);
    // The toolkit gives the first button the focus, or a toast; that of a note that was made or
    // opened stays.
    m_window.signal_map().connect([this] {
        m_firstFocus = Glib::signal_idle().connect([this] {
            const auto* focus = m_window.get_focus();
            const bool isOnPanes = focus == nullptr || focus->is_ancestor(m_layout.widget());
            if (!isOnPanes || focusedPane() == sidebarPane) focusPane(listPane);
            return false;
        });
    });
    m_layout.signalChanged().connect([this] { showSidebarButton(); });
    m_list.signalActivated().connect([this] { m_note.focusEditor(); });
    m_list.signalRename().connect([this] { m_note.focusTitle(); });
    m_connections.emplace_back(
        m_session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "appLanguage") relabel();
        }));
    m_connections.emplace_back(m_session.state.sidebarFilter.signalChanged().connect(
        [this] { keepFocus([this] { m_layout.sidebarChosen(); }); }));
    m_connections.emplace_back(
        m_session.list.signalCreated().connect([this](const Uuid&) { m_note.focusEditor(); }));
    m_opening.onShown = m_linkedFiles.onShown = [this] { focusNote(); };
    m_images.signalOtherFiles().connect([this](const FilePaths& paths) { openFiles(paths); });
    sayWhatWasKept(m_session, m_toasts, m_connections);
    m_connections.push_back(m_session.notifications.observe(
        notifications::sendAsEmail, [this](const std::any&) { m_mail.sendNote(); }));
    m_connections.emplace_back(m_session.state.isExportSheetPresented.signalChanged().connect(
        [this] { showExportSheet(); }));
    m_connections.emplace_back(
        m_session.state.isAIAssistantVisible.signalChanged().connect([this] { showAssistant(); }));
    m_connections.push_back(m_session.notifications.observe(
        notifications::importMarkdown, [this](const std::any&) { m_import.chooseFiles(); }));
}

void MainWindow::labelFrame() {
    m_window.set_title(m_session.texts(texts::programName));
    m_layout.relabel(m_session.texts);
}

void MainWindow::relabel() {
    labelFrame();
    m_menus.relabel();
    m_sidebar.relabel();
    m_list.relabel();
    m_import.relabel();
    m_libraryExport.relabel();
}

// The focus does not vanish with its pane.
void MainWindow::keepFocus(const std::function<void()>& arrange) {
    const int pane = focusedPane();
    arrange();
    if (!isPaneShown(pane)) focusPane(m_list.get_visible() ? listPane : notePane);
}

void MainWindow::showSidebarButton() {
    const bool isHidden = !m_layout.isSidebarShown();
    m_list.sidebarButton().set_visible(isHidden);
    m_list.headerBar().setWindowControls(isHidden, false);
    m_note.setListHidden(isHidden && !m_list.get_visible());
    m_note.setShowsWindowControls(!m_layout.isAssistantShown());
}

// Where the main menu opens whose button is hidden with the sidebar.
Gtk::Widget* MainWindow::placeOfMenu() {
    if (m_layout.isSidebarShown()) return nullptr;
    return m_list.get_visible() ? &m_list.sidebarButton() : &m_note.sidebarButton();
}

// Made when it is first asked for: nobody waits for it at the start.
void MainWindow::showAssistant() {
    const bool isShown = m_session.state.isAIAssistantVisible.get();
    if (isShown && !m_assistant) {
        m_assistant =
            std::make_unique<AssistantHost>(m_session, m_note.editor(), m_toasts, m_window);
        m_assistant->panel().signalSettings().connect(
            [this] { showSettings(SettingsPage::assistant); });
        m_layout.setAssistant(m_assistant->panel());
    }
    if (!m_assistant) return;
    const bool hadFocus = focusedPane() == assistantPane;
    m_layout.showAssistant(isShown);
    if (!m_window.get_mapped()) return;
    if (isShown) m_assistant->panel().focusInput();
    if (!isShown && hadFocus) m_note.focusEditor();
}

void MainWindow::showExportSheet() {
    if (!m_session.state.isExportSheetPresented.get()) return;
    m_session.editor.save();
    ExportSheet::show(
        m_window, m_session, m_toasts,
        [this](ExportFormat format) { return m_exporters.make(format); }, notesToExport());
}

// The open note may have left the list.
std::vector<Uuid> MainWindow::notesToExport() const {
    const auto& open = m_session.state.selectedNoteID.get();
    return open ? std::vector{*open} : m_list.view().selectedNotes();
}

void MainWindow::perform(CommandID command) {
    switch (command) {
        case CommandID::toggleSidebar:
            return keepFocus([this] { m_layout.toggleSidebar(); });
        case CommandID::findInAllNotes:
            m_layout.showList();
            return m_list.focusSearch();
        case CommandID::find:
        case CommandID::replace:
        case CommandID::findNext:
        case CommandID::findPrevious:
            return m_note.find(command);
        case CommandID::nextPane:
            return cyclePane(1);
        case CommandID::previousPane:
            return cyclePane(-1);
        case CommandID::togglePin:
        case CommandID::toggleArchive:
        case CommandID::moveToTrash:
            return m_list.performOnSelected(command);
        case CommandID::open:
            return m_linkedFiles.chooseFiles();
        case CommandID::saveAsLocalFile:
            return m_linkedFiles.saveAs();
        case CommandID::showInFolder:
            return m_linkedFiles.showInFolder();
        case CommandID::stopTracking:
            return m_linkedFiles.stopTracking();
        case CommandID::importFolder:
            return m_import.chooseFolder();
        case CommandID::exportLibrary:
            return m_libraryExport.choosePlace();
        case CommandID::insertImage:
            return m_images.chooseFiles();
        case CommandID::reportProblem:
            return m_mail.reportProblem();
        case CommandID::checkForUpdates:
            return showUpdateDialog(m_window, m_session.texts);
        case CommandID::themes:
            return showThemes();
        case CommandID::preferences:
            return showSettings();
        case CommandID::previewFile:
            return m_pages.chooseFile();
        case CommandID::markdownGuide:
            return m_pages.openGuide();
        case CommandID::commandPalette:
            return m_palette.open(PaletteViewModel::Kind::commands);
        case CommandID::goToNote:
            m_session.editor.save();  // the open note is listed by the title it has
            return m_palette.open(PaletteViewModel::Kind::notes);
        case CommandID::shortcuts:
            return showShortcutsWindow(m_window, m_session.texts);
        case CommandID::about:
            return showAboutWindow(m_window, m_session.texts);
        case CommandID::quit:
            return m_window.close();
        default:
            return;
    }
}

void MainWindow::showThemes() {
    if (!m_themePicker) m_themePicker = std::make_unique<ThemePicker>(m_session, m_window);
    m_themePicker->present();
}

void MainWindow::showSettings(std::optional<SettingsPage> page) {
    if (!m_settings) m_settings = std::make_unique<SettingsWindow>(m_session, m_window);
    if (page) m_settings->showPage(*page);
    m_settings->present();
}

void MainWindow::choose(const std::variant<CommandID, Uuid>& target) {
    if (const auto* command = std::get_if<CommandID>(&target)) {
        return m_session.commands.activate(*command);
    }
    m_session.reveal(std::get<Uuid>(target));
    m_note.focusEditor();
}

int MainWindow::focusedPane() const {
    auto* focus = m_window.get_focus();
    if (focus == nullptr) return notePane;
    if (focus->is_ancestor(m_sidebar)) return sidebarPane;
    if (m_assistant && focus->is_ancestor(m_assistant->panel())) return assistantPane;
    return focus->is_ancestor(m_list) ? listPane : notePane;
}

void MainWindow::cyclePane(int step) {
    int pane = focusedPane();
    do {
        pane = (pane + step + paneCount) % paneCount;
    } while (!isPaneShown(pane));
    focusPane(pane);
}

bool MainWindow::isPaneShown(int pane) const {
    if (pane == sidebarPane) return m_sidebar.get_visible();
    if (pane == listPane) return m_list.get_visible();
    return pane == notePane || m_layout.isAssistantShown();
}

void MainWindow::focusPane(int pane) {
    if (pane == sidebarPane) return m_sidebar.focusList();
    if (pane == listPane) return m_list.focusList();
    if (pane == assistantPane) return m_assistant->panel().focusInput();
    m_note.focusEditor();
}

bool MainWindow::closeRequested() {
    remember();
    if (m_session.finish()) {
        m_pages.closeAll();
        return false;
    }
    const auto& texts = m_session.texts;
    ask(m_window,
        {texts(texts::notSavedQuestion),
         texts(m_session.editor.isAtRisk() ? texts::notSavedNorKept : texts::notSavedDetail),
         {{"cancel", texts(texts::cancel)},
          {"close", texts(texts::closeAnyway), DialogAnswer::Look::destructive}}},
        [this](const std::string& answer) {
            if (answer == "close") m_window.get_application()->remove_window(m_window);
        });
    return true;
}

}  // namespace corvel
