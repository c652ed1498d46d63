#include "ui/SidebarRow.h"

#include "ui/Accessible.h"
#include "ui/CutText.h"

namespace corvel {

namespace {

constexpr int kIconGap = 10;
constexpr int kSectionGap = 8;

std::string accessibleNameOf(const SidebarNode& node) {
    return node.count ? node.name + ", " + std::to_string(*node.count) : node.name;
}

}  // namespace

SidebarRow::SidebarRow() : m_content(Gtk::Orientation::HORIZONTAL, kIconGap) {
    add_css_class("sidebar-row");
    m_name.set_hexpand(true);
    m_name.set_xalign(0);
    m_name.set_ellipsize(Pango::EllipsizeMode::END);
    tellWhenCut(m_name);
    m_count.add_css_class("count");
    m_count.add_css_class("numeric");
    m_content.append(m_icon);
    m_content.append(m_name);
    m_content.append(m_count);
    m_expander.set_child(m_content);
    m_expander.set_hexpand(true);
    // The list's own row takes the focus; its keys are handled by the sidebar.
    m_expander.set_focusable(false);
    append(m_expander);
}

void SidebarRow::bind(const Glib::RefPtr<Gtk::TreeListRow>& row, const std::string& addLabel) {
    m_treeRow = row;
    m_item = std::dynamic_pointer_cast<SidebarItem>(row->get_item());
    if (!m_item) return;
    const auto kind = m_item->node().kind;
    const bool isTree = kind == SidebarNode::Kind::folder || kind == SidebarNode::Kind::tag;
    m_expander.set_indent_for_icon(isTree);
    m_expander.set_list_row(row);
    m_addLabel = addLabel;
    m_itemChanged = m_item->signalChanged().connect([this] { show(); });
    m_expandedChanged = row->property_expanded().signal_changed().connect(
        [this] { m_expanded.emit(m_item->key(), m_treeRow->get_expanded()); });
    show();
}

void SidebarRow::unbind() {
    m_itemChanged.disconnect();
    m_expandedChanged.disconnect();
    m_expander.set_list_row({});
    m_item.reset();
    m_treeRow.reset();
}

void SidebarRow::show() {
    const auto& node = m_item->node();
    m_name.set_text(node.name);
    m_icon.set_from_icon_name(node.icon);
    m_icon.set_visible(!node.icon.empty());
    m_count.set_text(node.count ? std::to_string(*node.count) : std::string());
    m_count.set_visible(node.count.has_value());
    showAddButton(node.kind == SidebarNode::Kind::folderHeading);
    set_margin_top(node.isHeading() ? kSectionGap : 0);
    if (node.isHeading()) {
        m_name.add_css_class("section-heading");
    } else {
        m_name.remove_css_class("section-heading");
    }
    if (auto* parent = get_parent()) setAccessibleLabel(*parent, accessibleNameOf(node));
}

void SidebarRow::showAddButton(bool isShown) {
    if (isShown && m_addButton == nullptr) {
        m_addButton = Gtk::make_managed<Gtk::Button>();
        m_addButton->set_icon_name("list-add-symbolic");
        m_addButton->add_css_class("flat");
        m_addButton->add_css_class("section-add");
        m_addButton->set_valign(Gtk::Align::CENTER);
        m_addButton->signal_clicked().connect([this] { m_add.emit(); });
        m_content.append(*m_addButton);
    }
    if (m_addButton == nullptr) return;
    m_addButton->set_visible(isShown);
    labelControl(*m_addButton, m_addLabel);
}

}  // namespace corvel
