#pragma once

#include "library/SidebarViewModel.h"
#include "ui/SidebarItem.h"

#include <gtkmm/treelistmodel.h>

#include <functional>
#include <optional>
#include <set>
#include <string>

namespace corvel {

/// The sidebar's rows as one tree: fixed entries, folders under a heading, tags under a heading.
/// Remembers which rows are expanded.
class SidebarModel {
public:
    SidebarModel();

    const Glib::RefPtr<Gtk::TreeListModel>& tree() const { return m_tree; }
    void update(const SidebarViewModel& sidebar, const Localisation& texts);

    Glib::RefPtr<SidebarItem> itemAt(guint position) const;
    /// None while the row is hidden in a collapsed one.
    std::optional<guint> positionOf(const std::string& key) const;

    void setExpanded(const std::string& key, bool isExpanded);
    /// Expands every row on show that is remembered so.
    void restoreExpanded();
    std::string expandedText() const;
    void setExpandedText(const std::string& text);

private:
    Glib::RefPtr<SidebarItem::Store> m_root;
    Glib::RefPtr<Gtk::TreeListModel> m_tree;
    std::set<std::string> m_expanded;
};

}  // namespace corvel
