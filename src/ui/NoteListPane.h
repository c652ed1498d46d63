#pragma once

#include "app/Session.h"
#include "ui/Adw.h"
#include "ui/CommandMenus.h"
#include "ui/FolderDialogs.h"
#include "ui/NoteListView.h"
#include "ui/NoteMenu.h"
#include "ui/Toasts.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/searchentry.h>
#include <gtkmm/stack.h>

#include <vector>

namespace corvel {

/// The middle pane: what the sidebar selects or the search finds, as rows.
class NoteListPane : public Gtk::Box {
public:
    NoteListPane(Session& session, const CommandMenus& menus, Toasts& toasts);

    void relabel();
    void focusList();
    void focusSearch();
    /// Shown only while the sidebar is hidden.
    Gtk::Button& sidebarButton() { return m_sidebarButton; }
    adw::HeaderBar& headerBar() { return m_header; }
    NoteListView& view() { return m_view; }
    /// Pins, archives or trashes all selected notes; in the trash the last deletes, after a
    /// question.
    void performOnSelected(CommandID command);
    /// Deletes the selected notes for good, after a question.
    void askToDelete();
    std::string whatStays(const std::vector<Uuid>& ids) const;

    /// Enter in the list: the note is to be edited.
    sigc::signal<void()>& signalActivated() { return m_view.signalActivated(); }
    /// F2 in the list: the note's title is to be edited.
    sigc::signal<void()>& signalRename() { return m_rename; }

private:
    void buildHeader();
    void buildSearch();
    void buildBody();
    void buildKeys();
    void buildPointer();
    bool keyPressed(guint key, Gdk::ModifierType modifiers);
    bool searchKeyPressed(guint key);
    void openMenu(const Gdk::Rectangle& at);
    void deleteSelected();
    void fileInNewFolder(const std::vector<Uuid>& ids);
    void removing(const std::function<void()>& operation);
    void enterList();
    void leaveSearch();
    void searchStateChanged();
    void contentChanged();
    void showTitle();
    std::string titleText() const;
    void showEmptyState();
    void notesTrashed(const std::vector<Uuid>& ids);

    Session& m_session;
    const CommandMenus& m_menus;
    Toasts& m_toasts;
    adw::HeaderBar m_header;
    Gtk::Label m_title;
    Gtk::Label m_subtitle;
    Gtk::Button m_sidebarButton;
    Gtk::MenuButton m_sortButton;
    Gtk::MenuButton m_importButton;
    Gtk::Button m_newButton;
    Gtk::SearchEntry m_search;
    Gtk::Stack m_stack;
    NoteListView m_view;
    FolderDialogs m_dialogs;
    adw::StatusPage m_empty;
    Gtk::Button m_emptyNew;
    Gtk::Button m_emptyImport;
    NoteMenu m_menu;
    sigc::signal<void()> m_rename;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
