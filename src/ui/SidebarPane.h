#pragma once

#include "app/Session.h"
#include "ui/Adw.h"
#include "ui/CommandMenus.h"
#include "ui/ContextPopover.h"
#include "ui/FolderDialogs.h"
#include "ui/SidebarModel.h"
#include "ui/SidebarRow.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/listitem.h>
#include <gtkmm/listview.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/singleselection.h>

#include <set>
#include <string>
#include <vector>

namespace corvel {

/// The left pane: what the list can show. One selection over entries, folders and tags.
class SidebarPane : public Gtk::Box {
public:
    SidebarPane(Session& session, const CommandMenus& menus);

    void relabel();
    void focusList();
    /// Asks for a name and creates a folder.
    void askForFolder();
    adw::HeaderBar& headerBar() { return m_header; }

private:
    using Item = Glib::RefPtr<Gtk::ListItem>;

    void buildHeader();
    void buildList();
    void setUpFactory();
    void setUpRow(const Item& item);
    void bindRow(const Item& item);
    void buildKeys();
    void buildPointer();
    void buildDrop(SidebarRow& row);

    bool keyPressed(guint key, Gdk::ModifierType modifiers);
    bool folderKeyPressed(guint key);
    void moveSelection(int step);
    void setExpanded(bool isExpanded);
    void openMenu(const SidebarItem* item, Gtk::Widget& origin, const Gdk::Rectangle& at);
    SidebarRow* rowAt(double x, double y);
    SidebarRow* rowOf(guint position) const;

    Glib::RefPtr<SidebarItem> selectedItem() const;
    void selectionChanged();
    void showSelection();
    void reload();
    bool hasFocus();
    void rowExpanded(const std::string& key, bool isExpanded);
    Gtk::Window& window();

    Session& m_session;
    const CommandMenus& m_menus;
    FolderDialogs m_dialogs;
    SidebarModel m_model;
    adw::HeaderBar m_header;
    Gtk::Button m_hideButton;
    Gtk::MenuButton m_menuButton;
    Gtk::Label m_title;
    Gtk::ListView m_rows;
    Glib::RefPtr<Gtk::SingleSelection> m_selection;
    std::set<Item> m_bound;
    ContextPopover m_popover;
    bool m_isUpdating = false;
    std::vector<ScopedConnection> m_connections;
    ScopedConnection m_restore;
};

}  // namespace corvel
