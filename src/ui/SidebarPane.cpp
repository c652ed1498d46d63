#include "ui/SidebarPane.h"

#include "app/Texts.h"
#include "ui/Accessible.h"
#include "ui/LazyMenu.h"
#include "ui/NoteDrag.h"

#include <giomm/simpleactiongroup.h>
#include <glibmm/main.h>
#include <gtkmm/droptarget.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>

namespace corvel {

namespace {

constexpr const char* kExpandedKey = "sidebarExpanded";

bool isFolder(const SidebarItem* item) {
    return item != nullptr && item->node().kind == SidebarNode::Kind::folder;
}

/// Whether the note list's selected filter lost its folder.
bool containsFolder(const std::vector<Folder>& folders, const Uuid& id) {
    for (const auto& folder : folders) {
        if (folder.id == id || containsFolder(folder.children, id)) return true;
    }
    return false;
}

}  // namespace

SidebarPane::SidebarPane(Session& session, const CommandMenus& menus)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_menus(menus)
    , m_dialogs(session)
    , m_popover(*this, [this] { focusList(); }) {
    add_css_class("corvel-sidebar");
    m_model.setExpandedText(session.preferences.store().string(kExpandedKey).value_or(""));
    buildHeader();
    buildList();
    buildKeys();
    buildPointer();
    m_connections.emplace_back(session.sidebar.signalChanged().connect([this] { reload(); }));
    m_connections.emplace_back(
        session.state.sidebarFilter.signalChanged().connect([this] { showSelection(); }));
    relabel();
}

void SidebarPane::buildHeader() {
    m_hideButton.set_icon_name("sidebar-show-symbolic");
    m_hideButton.set_action_name(std::string("win.") +
                                 AppCommands::command(CommandID::toggleSidebar).actionName);
    m_menuButton.set_icon_name("open-menu-symbolic");
    m_menuButton.set_primary(true);
    m_title.add_css_class("heading");
    m_title.set_ellipsize(Pango::EllipsizeMode::END);
    m_header.packStart(m_hideButton);
    m_header.packEnd(m_menuButton);
    m_header.setTitle(m_title);
    m_header.setWindowControls(true, false);
    append(m_header.widget());
}

void SidebarPane::buildList() {
    setUpFactory();
    m_selection = Gtk::SingleSelection::create(m_model.tree());
    m_selection->set_autoselect(false);
    m_selection->set_can_unselect(true);
    m_selection->set_selected(GTK_INVALID_LIST_POSITION);
    m_selection->property_selected().signal_changed().connect([this] { selectionChanged(); });
    m_rows.set_model(m_selection);
    m_rows.add_css_class("navigation-sidebar");
    auto* scroller = Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller->set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller->set_vexpand(true);
    scroller->set_child(m_rows);
    append(*scroller);
}

void SidebarPane::setUpFactory() {
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([this](const Item& item) { setUpRow(item); });
    factory->signal_bind().connect([this](const Item& item) { bindRow(item); });
    factory->signal_unbind().connect([this](const Item& item) {
        m_bound.erase(item);
        if (auto* row = dynamic_cast<SidebarRow*>(item->get_child())) row->unbind();
    });
    m_rows.set_factory(factory);
}

void SidebarPane::setUpRow(const Item& item) {
    auto* row = Gtk::make_managed<SidebarRow>();
    row->signalAdd().connect([this] { askForFolder(); });
    row->signalExpanded().connect(
        [this](const std::string& key, bool isExpanded) { rowExpanded(key, isExpanded); });
    buildDrop(*row);
    item->set_child(*row);
}

void SidebarPane::bindRow(const Item& item) {
    m_bound.insert(item);
    auto* row = dynamic_cast<SidebarRow*>(item->get_child());
    const auto treeRow = std::dynamic_pointer_cast<Gtk::TreeListRow>(item->get_item());
    if (row == nullptr || !treeRow) return;
    row->bind(treeRow, m_session.texts(texts::newFolder));
    const bool isHeading = row->item() && row->item()->node().isHeading();
    item->set_selectable(!isHeading);
    item->set_activatable(!isHeading);
}

void SidebarPane::buildDrop(SidebarRow& row) {
    const auto target = Gtk::DropTarget::create(NoteDrag::type(), Gdk::DragAction::MOVE);
    const auto action = [&row](double, double) {
        return isFolder(row.item().get()) ? Gdk::DragAction::MOVE : Gdk::DragAction{};
    };
    target->signal_enter().connect(action, false);
    target->signal_motion().connect(action, false);
    target->signal_drop().connect(
        [this, &row](const Glib::ValueBase& value, double, double) {
            auto notes = NoteDrag::notesIn(value);
            if (notes.empty() || !isFolder(row.item().get())) return false;
            m_dialogs.drop(window(), std::move(notes), row.item()->node().filter.folderID);
            return true;
        },
        false);
    row.add_controller(target);
}

void SidebarPane::buildKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    // Before the list's own keys: headings are to be stepped over.
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keyPressed(key, modifiers);
        },
        false);
    m_rows.add_controller(keys);
}

void SidebarPane::buildPointer() {
    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->signal_pressed().connect([this, raw = click.get()](int, double x, double y) {
        raw->set_state(Gtk::EventSequenceState::CLAIMED);
        auto* row = rowAt(x, y);
        openMenu(row == nullptr ? nullptr : row->item().get(), m_rows,
                 {static_cast<int>(x), static_cast<int>(y), 1, 1});
    });
    m_rows.add_controller(click);
}

bool SidebarPane::keyPressed(guint key, Gdk::ModifierType modifiers) {
    const auto pressed =
        modifiers & (Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK |
                     Gdk::ModifierType::ALT_MASK);
    if (key == GDK_KEY_Menu || (key == GDK_KEY_F10 && pressed == Gdk::ModifierType::SHIFT_MASK)) {
        auto* row = rowOf(m_selection->get_selected());
        auto& origin = row == nullptr ? static_cast<Gtk::Widget&>(m_rows) : *row;
        openMenu(selectedItem().get(), origin,
                 {origin.get_width() / 4, row == nullptr ? 0 : origin.get_height() / 2, 1, 1});
        return true;
    }
    if (pressed != Gdk::ModifierType{}) return false;
    switch (key) {
        case GDK_KEY_Up:
        case GDK_KEY_KP_Up:
            moveSelection(-1);
            return true;
        case GDK_KEY_Down:
        case GDK_KEY_KP_Down:
            moveSelection(1);
            return true;
        case GDK_KEY_Left:
        case GDK_KEY_Right:
            setExpanded(key == GDK_KEY_Right);
            return true;
        default:
            return folderKeyPressed(key);
    }
}

bool SidebarPane::folderKeyPressed(guint key) {
    const auto item = selectedItem();
    if (!isFolder(item.get())) return false;
    const auto& node = item->node();
    if (key == GDK_KEY_F2) {
        m_dialogs.rename(window(), node.filter.folderID, node.name);
        return true;
    }
    if (key == GDK_KEY_Delete || key == GDK_KEY_KP_Delete) {
        m_dialogs.remove(window(), node.filter.folderID, node.name);
        return true;
    }
    return false;
}

void SidebarPane::moveSelection(int step) {
    const auto count = static_cast<int>(m_model.tree()->get_n_items());
    const guint selected = m_selection->get_selected();
    int next = selected == GTK_INVALID_LIST_POSITION ? -1 : static_cast<int>(selected);
    do {
        next += step;
        if (next < 0 || next >= count) return;
    } while (m_model.itemAt(static_cast<guint>(next))->node().isHeading());
    m_selection->set_selected(static_cast<guint>(next));
    focusList();
}

void SidebarPane::setExpanded(bool isExpanded) {
    const guint selected = m_selection->get_selected();
    if (selected == GTK_INVALID_LIST_POSITION) return;
    const auto row = m_model.tree()->get_row(selected);
    if (!row) return;
    if (row->is_expandable() && row->get_expanded() != isExpanded) {
        row->set_expanded(isExpanded);
    } else if (!isExpanded && row->get_parent()) {
        m_selection->set_selected(row->get_parent()->get_position());
        focusList();
    }
}

SidebarRow* SidebarPane::rowAt(double x, double y) {
    for (auto* widget = m_rows.pick(x, y); widget != nullptr && widget != &m_rows;
         widget = widget->get_parent()) {
        if (auto* row = dynamic_cast<SidebarRow*>(widget)) return row;
        if (auto* row = dynamic_cast<SidebarRow*>(widget->get_first_child())) return row;
    }
    return nullptr;
}

SidebarRow* SidebarPane::rowOf(guint position) const {
    for (const auto& item : m_bound) {
        if (item->get_position() == position) return dynamic_cast<SidebarRow*>(item->get_child());
    }
    return nullptr;
}

void SidebarPane::openMenu(const SidebarItem* item, Gtk::Widget& origin, const Gdk::Rectangle& at) {
    const auto& texts = m_session.texts;
    const auto menu = Gio::Menu::create();
    const auto actions = Gio::SimpleActionGroup::create();
    auto section = Gio::Menu::create();
    const auto add = [&](const char* name, const Text& label, const std::function<void()>& run) {
        actions->add_action(name, run);
        section->append(texts(label), std::string("sidebar.") + name);
    };
    add("folder", texts::newFolder, [this] { askForFolder(); });
    menu->append_section(section);
    if (isFolder(item)) {
        const auto id = item->node().filter.folderID;
        const auto name = item->node().name;
        add("subfolder", texts::newSubfolder, [this, id, name, key = item->key()] {
            m_model.setExpanded(key, true);
            m_dialogs.createIn(window(), id, name);
        });
        section = Gio::Menu::create();
        menu->append_section(section);
        add("rename", texts::rename, [this, id, name] { m_dialogs.rename(window(), id, name); });
        add("delete", texts::deleteFolder,
            [this, id, name] { m_dialogs.remove(window(), id, name); });
    }
    m_popover.popup(menu, "sidebar", actions, origin, at);
}

void SidebarPane::askForFolder() {
    m_dialogs.create(window());
}

Gtk::Window& SidebarPane::window() {
    return dynamic_cast<Gtk::Window&>(*get_root());
}

Glib::RefPtr<SidebarItem> SidebarPane::selectedItem() const {
    const guint selected = m_selection->get_selected();
    return selected == GTK_INVALID_LIST_POSITION ? nullptr : m_model.itemAt(selected);
}

void SidebarPane::selectionChanged() {
    if (m_isUpdating) return;
    const auto item = selectedItem();
    if (!item || item->node().isHeading()) return;
    auto& state = m_session.state;
    state.searchQuery.set({});
    state.isSearchActive.set(false);
    state.sidebarFilter.set(item->node().filter);
}

void SidebarPane::showSelection() {
    const auto key = m_session.state.sidebarFilter.get().toString();
    const auto current = selectedItem();
    if (current && current->key() == key) return;
    m_isUpdating = true;
    m_selection->set_selected(m_model.positionOf(key).value_or(GTK_INVALID_LIST_POSITION));
    m_isUpdating = false;
}

bool SidebarPane::hasFocus() {
    auto* root = get_root();
    auto* focus = root == nullptr ? nullptr : root->get_focus();
    return focus != nullptr && focus->is_ancestor(m_rows);
}

void SidebarPane::reload() {
    const bool hadFocus = hasFocus();
    m_isUpdating = true;
    m_model.update(m_session.sidebar, m_session.texts);
    m_isUpdating = false;
    const auto& filter = m_session.state.sidebarFilter.get();
    const bool isGone = filter.kind == SidebarFilter::Kind::folder &&
                        !containsFolder(m_session.sidebar.folders, filter.folderID);
    if (isGone) m_session.state.sidebarFilter.set({});
    showSelection();
    if (hadFocus && !hasFocus()) focusList();
}

void SidebarPane::rowExpanded(const std::string& key, bool isExpanded) {
    if (m_isUpdating) return;
    m_model.setExpanded(key, isExpanded);
    m_session.preferences.store().setString(kExpandedKey, m_model.expandedText());
    // Rows inside an opened one may have been open before; the tree must not change while it tells
    // of a change.
    m_restore = Glib::signal_idle().connect([this] {
        m_model.restoreExpanded();
        showSelection();
        return false;
    });
}

void SidebarPane::focusList() {
    const guint selected = m_selection->get_selected();
    if (selected != GTK_INVALID_LIST_POSITION) {
        m_rows.activate_action("list.scroll-to-item", Glib::Variant<guint32>::create(selected));
        auto* row = rowOf(selected);
        if (row != nullptr && row->get_parent() != nullptr && row->get_parent()->grab_focus()) {
            return;
        }
    }
    m_rows.grab_focus();
}

void SidebarPane::relabel() {
    const auto& texts = m_session.texts;
    m_title.set_text(texts(texts::programName));
    setLazyMenu(m_menuButton, m_menus.primary());
    labelControl(m_hideButton, texts(texts::hideSidebar));
    labelControl(m_menuButton, texts(texts::mainMenu));
    setAccessibleLabel(m_rows, texts(texts::sidebarPane));
    reload();
}

}  // namespace corvel
