#include "ui/SidebarItem.h"

#include <unordered_set>

namespace corvel {

namespace {

using Store = SidebarItem::Store;

SidebarNode withoutChildren(const SidebarNode& node) {
    return {node.kind, node.filter, node.name, node.icon, node.count, {}};
}

void removeMissing(Store& store, const std::vector<SidebarNode>& nodes) {
    std::unordered_set<std::string> wanted;
    for (const auto& node : nodes) {
        wanted.insert(node.key());
    }
    for (guint i = store.get_n_items(); i-- > 0;) {
        if (!wanted.contains(store.get_item(i)->key())) store.remove(i);
    }
}

/// Position of the key at or behind `from`, or the end.
guint findFrom(const Store& store, guint from, const std::string& key) {
    guint i = from;
    while (i < store.get_n_items() && store.get_item(i)->key() != key) {
        ++i;
    }
    return i;
}

void updateAt(Store& store, guint position, const SidebarNode& node) {
    const auto item = store.get_item(position);
    const bool wasParent = item->hasChildren();
    item->update(node);
    // A tree asks once whether a row has children: put the item in again when the answer changes.
    if (wasParent != item->hasChildren()) store.splice(position, 1, {item});
}

}  // namespace

std::string SidebarNode::key() const {
    if (kind == Kind::folderHeading) return "heading:folders";
    if (kind == Kind::tagHeading) return "heading:tags";
    return filter.toString();
}

SidebarItem::SidebarItem(const SidebarNode& node)
    : Glib::ObjectBase("CorvelSidebarItem")
    , m_node(withoutChildren(node))
    , m_key(node.key())
    , m_children(Store::create()) {
    reconcile(*m_children, node.children);
}

Glib::RefPtr<SidebarItem> SidebarItem::create(const SidebarNode& node) {
    return Glib::make_refptr_for_instance(new SidebarItem(node));
}

void SidebarItem::update(const SidebarNode& node) {
    reconcile(*m_children, node.children);
    const bool isSame = m_node.name == node.name && m_node.count == node.count;
    m_node = withoutChildren(node);
    if (!isSame) m_changed.emit();
}

void SidebarItem::reconcile(Store& store, const std::vector<SidebarNode>& nodes) {
    removeMissing(store, nodes);
    for (guint i = 0; i < nodes.size(); ++i) {
        const auto& node = nodes[i];
        const guint found = findFrom(store, i, node.key());
        if (found == store.get_n_items()) {
            store.insert(i, create(node));
            continue;
        }
        if (found != i) {
            const auto moved = store.get_item(found);
            store.remove(found);
            store.insert(i, moved);
        }
        updateAt(store, i, node);
    }
}

}  // namespace corvel
