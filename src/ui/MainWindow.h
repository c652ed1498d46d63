#pragma once

#include "app/Session.h"
#include "platform/Handle.h"
#include "ui/AssistantHost.h"
#include "ui/CommandActions.h"
#include "ui/CommandMenus.h"
#include "ui/FilePaths.h"
#include "ui/ImageFlow.h"
#include "ui/ImportFlow.h"
#include "ui/LibraryExportFlow.h"
#include "ui/LinkedFileFlow.h"
#include "ui/MailFlow.h"
#include "ui/MainMenuKey.h"
#include "ui/NoteExporters.h"
#include "ui/NoteListPane.h"
#include "ui/NotePane.h"
#include "ui/OpeningFlow.h"
#include "ui/PageWindows.h"
#include "ui/PaletteView.h"
#include "ui/PaneLayout.h"
#include "ui/SettingsWindow.h"
#include "ui/SidebarPane.h"
#include "ui/ThemePicker.h"
#include "ui/Toasts.h"

#include <gtkmm/application.h>
#include <gtkmm/applicationwindow.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace corvel {

/// The program's window: sidebar, note list and note.
class MainWindow {
public:
    MainWindow(Session& session, Gtk::Application& application);
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    ~MainWindow();

    Gtk::ApplicationWindow& window() { return m_window; }
    /// Commands that concern windows and panes rather than the state.
    void perform(CommandID command);
    /// Opens the settings, at `page` or where they were left.
    void showSettings(std::optional<SettingsPage> page = {});
    /// Size, panes and the note's place, for the next start.
    void remember();
    void focusNote() { m_note.focusEditor(); }
    void importPaths(const FilePaths& paths) { m_import.importPaths(paths); }
    /// Files from outside; `addresses` are of those that do not lie on this machine.
    void openFiles(const FilePaths& paths, const std::vector<std::string>& addresses = {}) {
        m_opening.open(paths, addresses);
    }

    SidebarPane& sidebar() { return m_sidebar; }
    NoteListPane& list() { return m_list; }
    NotePane& note() { return m_note; }
    /// None until it was shown first.
    AssistantHost* assistant() { return m_assistant.get(); }

private:
    void showIcon();
    void restoreSize();
    void followWidth();
    void buildDrop();
    void connect();
    void labelFrame();
    void relabel();
    void keepFocus(const std::function<void()>& arrange);
    void showSidebarButton();
    Gtk::Widget* placeOfMenu();
    void showAssistant();
    bool isPaneShown(int pane) const;
    void showExportSheet();
    std::vector<Uuid> notesToExport() const;
    void showThemes();
    void choose(const std::variant<CommandID, Uuid>& target);
    void cyclePane(int step);
    int focusedPane() const;
    void focusPane(int pane);
    bool closeRequested();

    Session& m_session;
    Gtk::ApplicationWindow& m_window;
    GObjectHandle<GtkWindow> m_hold;  // closing the window must not free it under its panes
    CommandMenus m_menus;
    CommandActions m_actions;
    Toasts m_toasts;
    SidebarPane& m_sidebar;
    NoteListPane& m_list;
    NotePane& m_note;
    ImportFlow& m_import;
    LinkedFileFlow m_linkedFiles;
    OpeningFlow m_opening;
    LibraryExportFlow& m_libraryExport;
    ImageFlow m_images;
    MailFlow m_mail;
    NoteExporters m_exporters;
    PageWindows m_pages;
    PaneLayout m_layout;
    std::unique_ptr<AssistantHost> m_assistant;
    std::unique_ptr<ThemePicker> m_themePicker;
    std::unique_ptr<SettingsWindow> m_settings;
    PaletteView& m_palette;
    std::unique_ptr<MainMenuKey> m_menuKey;
    std::vector<ScopedConnection> m_connections;
    ScopedConnection m_arrange;
    ScopedConnection m_firstFocus;
};

}  // namespace corvel
