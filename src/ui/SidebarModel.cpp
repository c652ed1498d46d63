#include "ui/SidebarModel.h"

#include "app/Texts.h"
#include "ui/EmptyState.h"

#include <sstream>

namespace corvel {

namespace {

using Kind = SidebarNode::Kind;

SidebarNode entry(SidebarFilter::Kind kind, std::int64_t count, const Localisation& texts) {
    const SidebarFilter filter{kind, {}, {}};
    return {Kind::entry, filter, filterName(filter, texts), filterIcon(filter), count, {}};
}

SidebarNode folderNode(const Folder& folder) {
    SidebarNode node{Kind::folder,     SidebarFilter::folder(folder.id),
                     folder.name,      "folder-symbolic",
                     folder.noteCount, {}};
    for (const auto& child : folder.children) {
        node.children.push_back(folderNode(child));
    }
    return node;
}

SidebarNode tagNode(const Tag& tag) {
    SidebarNode node{Kind::tag,    SidebarFilter::tag(tag.fullPath),
                     tag.name,     "corvel-tag-symbolic",
                     std::nullopt, {}};
    for (const auto& child : tag.children) {
        node.children.push_back(tagNode(child));
    }
    return node;
}

std::vector<SidebarNode> wantedRows(const SidebarViewModel& sidebar, const Localisation& texts) {
    using Filter = SidebarFilter::Kind;
    std::vector<SidebarNode> rows{entry(Filter::allNotes, sidebar.allNotesCount, texts),
                                  entry(Filter::unfiled, sidebar.unfiledCount, texts),
                                  entry(Filter::localFiles, sidebar.localFilesCount, texts),
                                  entry(Filter::archived, sidebar.archivedCount, texts),
                                  entry(Filter::trash, sidebar.trashCount, texts)};
    rows.push_back({Kind::folderHeading, {}, texts(texts::folders), {}, std::nullopt, {}});
    for (const auto& folder : sidebar.folders) {
        rows.push_back(folderNode(folder));
    }
    if (sidebar.tagTree.empty()) return rows;
    rows.push_back({Kind::tagHeading, {}, texts(texts::tags), {}, std::nullopt, {}});
    for (const auto& tag : sidebar.tagTree) {
        rows.push_back(tagNode(tag));
    }
    return rows;
}

}  // namespace

SidebarModel::SidebarModel()
    : m_root(SidebarItem::Store::create())
    , m_tree(Gtk::TreeListModel::create(
          m_root, [](const Glib::RefPtr<Glib::ObjectBase>& object) -> Glib::RefPtr<Gio::ListModel> {
              const auto item = std::dynamic_pointer_cast<SidebarItem>(object);
              if (!item || !item->hasChildren()) return {};
              return item->children();
          })) {}

void SidebarModel::update(const SidebarViewModel& sidebar, const Localisation& texts) {
    SidebarItem::reconcile(*m_root, wantedRows(sidebar, texts));
    restoreExpanded();
}

Glib::RefPtr<SidebarItem> SidebarModel::itemAt(guint position) const {
    const auto row = m_tree->get_row(position);
    return row ? std::dynamic_pointer_cast<SidebarItem>(row->get_item()) : nullptr;
}

std::optional<guint> SidebarModel::positionOf(const std::string& key) const {
    for (guint i = 0; i < m_tree->get_n_items(); ++i) {
        const auto item = itemAt(i);
        if (item && item->key() == key) return i;
    }
    return std::nullopt;
}

void SidebarModel::setExpanded(const std::string& key, bool isExpanded) {
    if (isExpanded) {
        m_expanded.insert(key);
    } else {
        m_expanded.erase(key);
    }
}

void SidebarModel::restoreExpanded() {
    if (m_expanded.empty()) return;
    // The list grows behind the row that is expanded, so its new rows are met as well.
    for (guint i = 0; i < m_tree->get_n_items(); ++i) {
        const auto row = m_tree->get_row(i);
        const auto item = itemAt(i);
        if (row && item && !row->get_expanded() && m_expanded.contains(item->key())) {
            row->set_expanded(true);
        }
    }
}

std::string SidebarModel::expandedText() const {
    std::string text;
    for (const auto& key : m_expanded) {
        text += key + "\n";
    }
    return text;
}

void SidebarModel::setExpandedText(const std::string& text) {
    m_expanded.clear();
    std::istringstream lines(text);
    for (std::string key; std::getline(lines, key);) {
        m_expanded.insert(key);
    }
}

}  // namespace corvel
