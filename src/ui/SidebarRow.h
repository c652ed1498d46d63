#pragma once

#include "platform/ScopedConnection.h"
#include "ui/SidebarItem.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>
#include <gtkmm/treeexpander.h>
#include <gtkmm/treelistrow.h>

#include <string>

namespace corvel {

/// One row of the sidebar: an entry, a folder, a tag or the heading of a section.
class SidebarRow : public Gtk::Box {
public:
    SidebarRow();

    void bind(const Glib::RefPtr<Gtk::TreeListRow>& row, const std::string& addLabel);
    void unbind();

    const Glib::RefPtr<SidebarItem>& item() const { return m_item; }
    const Glib::RefPtr<Gtk::TreeListRow>& treeRow() const { return m_treeRow; }
    /// The "+" of the folders' heading.
    sigc::signal<void()>& signalAdd() { return m_add; }
    /// The user opened or closed the row.
    sigc::signal<void(const std::string& key, bool isExpanded)>& signalExpanded() {
        return m_expanded;
    }

private:
    void show();
    void showAddButton(bool isShown);

    Glib::RefPtr<Gtk::TreeListRow> m_treeRow;
    Glib::RefPtr<SidebarItem> m_item;
    ScopedConnection m_itemChanged;
    ScopedConnection m_expandedChanged;
    Gtk::TreeExpander m_expander;
    Gtk::Box m_content;
    Gtk::Image m_icon;
    Gtk::Label m_name;
    Gtk::Label m_count;
    Gtk::Button* m_addButton = nullptr;  // made for the one row that has it
    std::string m_addLabel;
    sigc::signal<void()> m_add;
    sigc::signal<void(const std::string&, bool)> m_expanded;
};

}  // namespace corvel
