#pragma once

#include "library/SidebarFilter.h"

#include <giomm/liststore.h>
#include <glibmm/object.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// What a row of the sidebar shows; a plain description of the wanted tree.
struct SidebarNode {
    enum class Kind { entry, folderHeading, tagHeading, folder, tag };

    Kind kind = Kind::entry;
    SidebarFilter filter;  ///< for all but headings
    std::string name;
    std::string icon;
    std::optional<std::int64_t> count;
    std::vector<SidebarNode> children;

    bool isHeading() const { return kind == Kind::folderHeading || kind == Kind::tagHeading; }
    /// Tells a row among all rows, and over restarts.
    std::string key() const;
};

/// One row of the sidebar as the list widget sees it. It lives as long as what it stands for, so
/// that expansion and selection outlive reloads.
class SidebarItem : public Glib::Object {
public:
    using Store = Gio::ListStore<SidebarItem>;

    static Glib::RefPtr<SidebarItem> create(const SidebarNode& node);

    /// Without its children, which are items of `children()`.
    const SidebarNode& node() const { return m_node; }
    const std::string& key() const { return m_key; }
    const Glib::RefPtr<Store>& children() const { return m_children; }
    bool hasChildren() const { return m_children->get_n_items() > 0; }

    /// Takes over texts, count and children; emits `signalChanged` when the row shows something
    /// else.
    void update(const SidebarNode& node);
    sigc::signal<void()>& signalChanged() { return m_changed; }

    /// Brings `store` to `nodes` with as few changes as the eye expects.
    static void reconcile(Store& store, const std::vector<SidebarNode>& nodes);

private:
    explicit SidebarItem(const SidebarNode& node);

    SidebarNode m_node;
    std::string m_key;
    Glib::RefPtr<Store> m_children;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
