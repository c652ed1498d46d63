#include "ui/NoteListPane.h"

#include "app/Texts.h"
#include "app/texts/LinkedFileTexts.h"
#include "ui/Accessible.h"
#include "ui/CutText.h"
#include "ui/Dialogs.h"
#include "ui/EmptyState.h"
#include "ui/LazyMenu.h"

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <chrono>
#include <initializer_list>

namespace corvel {

namespace {

constexpr int kMargin = 12;
constexpr std::chrono::milliseconds kSearchDelay{60};

std::string actionOf(CommandID id) {
    return std::string("win.") + AppCommands::command(id).actionName;
}

void makeLabel(Gtk::Label& label, const char* style) {
    label.add_css_class(style);
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    tellWhenCut(label);
}

const Folder* findFolder(const std::vector<Folder>& folders, const Uuid& id) {
    for (const auto& folder : folders) {
        if (folder.id == id) return &folder;
        if (const auto* found = findFolder(folder.children, id)) return found;
    }
    return nullptr;
}

}  // namespace

NoteListPane::NoteListPane(Session& session, const CommandMenus& menus, Toasts& toasts)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_menus(menus)
    , m_toasts(toasts)
    , m_view(session)
    , m_dialogs(session)
    , m_menu(session,
             *this,
             {.removing = [this](const auto& operation) { removing(operation); },
              .deletePermanently = [this] { askToDelete(); },
              .toNewFolder = [this](const auto& ids) { fileInNewFolder(ids); },
              .giveFocus = [this] { focusList(); }}) {
    add_css_class("corvel-list");
    buildHeader();
    buildSearch();
    buildBody();
    buildKeys();
    buildPointer();

    auto& list = session.list;
    const auto changed = [this] { contentChanged(); };
    m_connections.emplace_back(
        list.signalSpliced().connect([this](const ListSplice&) { contentChanged(); }));
    m_connections.emplace_back(list.signalReplaced().connect(changed));
    m_connections.emplace_back(session.sidebar.signalChanged().connect([this] { showTitle(); }));
    m_connections.emplace_back(
        session.state.isSearchActive.signalChanged().connect([this] { searchStateChanged(); }));
    m_connections.emplace_back(session.state.searchQuery.signalChanged().connect([this] {
        // A search that began elsewhere, as from the desktop's shell.
        const auto& query = m_session.state.searchQuery.get();
        if (m_search.get_text().raw() != query) m_search.set_text(query);
    }));
    m_connections.emplace_back(
        list.signalTrashed().connect([this](const std::vector<Uuid>& ids) { notesTrashed(ids); }));
    relabel();
}

void NoteListPane::buildHeader() {
    makeLabel(m_title, "heading");
    makeLabel(m_subtitle, "caption");
    m_subtitle.add_css_class("dim-label");
    auto* names = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    names->set_valign(Gtk::Align::CENTER);
    names->set_hexpand(true);
    names->set_margin_start(kMargin / 4);
    names->append(m_title);
    names->append(m_subtitle);
    m_sidebarButton.set_icon_name("sidebar-show-symbolic");
    m_sidebarButton.set_action_name(actionOf(CommandID::toggleSidebar));
    m_sidebarButton.set_visible(false);
    m_sortButton.set_icon_name("corvel-sort-symbolic");
    m_importButton.set_icon_name("corvel-import-symbolic");
    m_newButton.set_icon_name("list-add-symbolic");
    m_newButton.set_action_name(actionOf(CommandID::newNote));
    // Packed at the two sides, the names would get no more than half of the bar.
    auto* content = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, kMargin / 4);
    content->set_hexpand(true);
    content->append(m_sidebarButton);
    content->append(*names);
    for (Gtk::Widget* button :
         std::initializer_list<Gtk::Widget*>{&m_sortButton, &m_importButton, &m_newButton})
        content->append(*button);
    m_header.setTitle(*content);
    m_header.setWindowControls(false, false);
    append(m_header.widget());
}

void NoteListPane::buildSearch() {
    m_search.set_margin_start(kMargin);
    m_search.set_margin_end(kMargin);
    m_search.set_margin_bottom(kMargin / 2);
    m_search.set_search_delay(static_cast<unsigned>(kSearchDelay.count()));
    m_search.signal_search_changed().connect([this] {
        auto& state = m_session.state;
        const std::string query = m_search.get_text();
        if (!query.empty()) state.isSearchActive.set(true);
        state.searchQuery.set(query);
    });
    m_search.signal_stop_search().connect([this] { leaveSearch(); });
    m_search.signal_activate().connect([this] { enterList(); });
    append(m_search);
}

void NoteListPane::buildBody() {
    auto* buttons = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, kMargin);
    buttons->set_halign(Gtk::Align::CENTER);
    m_emptyNew.set_action_name(actionOf(CommandID::newNote));
    m_emptyNew.add_css_class("suggested-action");
    m_emptyImport.set_action_name(actionOf(CommandID::importMarkdown));
    for (auto* button : {&m_emptyNew, &m_emptyImport}) {
        button->add_css_class("pill");
        buttons->append(*button);
    }
    m_empty.setChild(*buttons);
    m_empty.widget().add_css_class("compact");
    m_stack.set_vexpand(true);
    m_stack.add(m_view, "rows");
    m_stack.add(m_empty.widget(), "empty");
    m_empty.widget().set_visible(false);
    append(m_stack);
}

void NoteListPane::buildKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            return keyPressed(key, modifiers);
        },
        false);
    m_view.rows().add_controller(keys);
    const auto searchKeys = Gtk::EventControllerKey::create();
    searchKeys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) { return searchKeyPressed(key); }, false);
    m_search.add_controller(searchKeys);
}

void NoteListPane::buildPointer() {
    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->signal_pressed().connect([this, raw = click.get()](int, double x, double y) {
        raw->set_state(Gtk::EventSequenceState::CLAIMED);
        if (m_view.selectAt(x, y)) openMenu({static_cast<int>(x), static_cast<int>(y), 1, 1});
    });
    m_view.rows().add_controller(click);
}

bool NoteListPane::keyPressed(guint key, Gdk::ModifierType modifiers) {
    const auto pressed =
        modifiers & (Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK |
                     Gdk::ModifierType::ALT_MASK);
    if (key == GDK_KEY_Menu || (key == GDK_KEY_F10 && pressed == Gdk::ModifierType::SHIFT_MASK)) {
        openMenu(m_view.focusedRectangle());
        return true;
    }
    if (pressed != Gdk::ModifierType{}) return false;
    if (key == GDK_KEY_Delete || key == GDK_KEY_KP_Delete) {
        deleteSelected();
        return true;
    }
    if (key == GDK_KEY_F2) {
        m_rename.emit();
        return true;
    }
    if (key == GDK_KEY_Escape && m_session.state.isSearchActive.get()) {
        leaveSearch();
        return true;
    }
    return false;
}

bool NoteListPane::searchKeyPressed(guint key) {
    if (key != GDK_KEY_Down && key != GDK_KEY_KP_Down) return false;
    enterList();
    return true;
}

void NoteListPane::openMenu(const Gdk::Rectangle& at) {
    m_menu.popup(m_view.selectedNotes(), m_view.rows(), at);
}

void NoteListPane::deleteSelected() {
    if (m_session.list.filter().kind == SidebarFilter::Kind::trash &&
        !m_session.list.isSearching()) {
        askToDelete();
        return;
    }
    const auto ids = m_view.selectedNotes();
    if (!ids.empty()) removing([&] { m_session.list.moveToTrash(ids); });
}

void NoteListPane::performOnSelected(CommandID command) {
    const auto ids = m_view.selectedNotes();
    if (ids.empty()) return;
    auto& list = m_session.list;
    switch (command) {
        case CommandID::togglePin:
            return removing([&] { list.togglePin(ids); });
        case CommandID::toggleArchive:
            return removing([&] { list.toggleArchive(ids); });
        case CommandID::moveToTrash:
            return deleteSelected();
        default:
            return;
    }
}

void NoteListPane::removing(const std::function<void()>& operation) {
    m_view.removing(operation);
    if (m_session.list.size() == 0) focusList();
}

// A note goes, its file does not.
std::string NoteListPane::whatStays(const std::vector<Uuid>& ids) const {
    const auto isLocalFile = [this](const Uuid& id) {
        const auto position = m_session.list.positionOf(id);
        const auto note = position ? m_session.list.summaryAt(*position) : std::nullopt;
        return note && note->isLocalFile;
    };
    if (std::ranges::none_of(ids, isLocalFile)) return {};
    return std::string(" ") +
           m_session.texts(ids.size() == 1 ? texts::fileStays : texts::filesStay);
}

void NoteListPane::fileInNewFolder(const std::vector<Uuid>& ids) {
    if (auto* window = dynamic_cast<Gtk::Window*>(get_root())) m_dialogs.createFor(*window, ids);
}

void NoteListPane::askToDelete() {
    auto ids = m_view.selectedNotes();
    auto* window = dynamic_cast<Gtk::Window*>(get_root());
    if (ids.empty() || window == nullptr) return;
    const auto& texts = m_session.texts;
    std::string heading = texts.format(texts::deleteForGoodSeveral, {texts.notes(std::ssize(ids))});
    if (ids.size() == 1) {
        const auto position = m_session.list.positionOf(ids.front());
        const auto note = position ? m_session.list.summaryAt(*position) : std::nullopt;
        const bool hasTitle = note && !note->title.empty();
        heading = texts.format(texts::deleteForGoodOne,
                               {hasTitle ? note->title : texts(texts::untitled)});
    }
    const auto detail = texts(texts::deleteForGoodDetail) + whatStays(ids);
    ask(*window,
        {heading,
         detail,
         {{"cancel", texts(texts::cancel)},
          {"delete", texts(texts::deletePermanently), DialogAnswer::Look::destructive}}},
        [this, ids = std::move(ids)](const std::string& answer) {
            if (answer == "delete") removing([&] { m_session.list.deletePermanently(ids); });
        });
}

void NoteListPane::leaveSearch() {
    m_search.set_text({});
    m_session.state.searchQuery.set({});
    m_session.state.isSearchActive.set(false);
    focusList();
}

void NoteListPane::searchStateChanged() {
    if (!m_session.state.isSearchActive.get()) m_search.set_text({});
}

void NoteListPane::focusList() {
    if (m_session.list.size() > 0) {
        m_view.focusSelected();
    } else if (m_emptyNew.get_mapped()) {
        m_emptyNew.grab_focus();
    } else {
        m_search.grab_focus();
    }
}

void NoteListPane::enterList() {
    if (m_session.list.size() > 0) m_view.enter();
}

void NoteListPane::focusSearch() {
    m_search.grab_focus();
    m_search.select_region(0, -1);
}

void NoteListPane::contentChanged() {
    showTitle();
    showEmptyState();
}

std::string NoteListPane::titleText() const {
    const auto& list = m_session.list;
    if (list.isSearching()) return m_session.texts(texts::searchResults);
    if (list.filter().kind == SidebarFilter::Kind::folder) {
        const auto* folder = findFolder(m_session.sidebar.folders, list.filter().folderID);
        if (folder != nullptr) return folder->name;
    }
    return filterName(list.filter(), m_session.texts);
}

void NoteListPane::showTitle() {
    m_title.set_text(titleText());
    m_subtitle.set_text(
        m_session.texts.notes(static_cast<std::int64_t>(m_session.list.noteCount())));
}

void NoteListPane::showEmptyState() {
    const auto& list = m_session.list;
    const bool isEmpty = list.size() == 0 && list.isSearchFinished();
    if (isEmpty) {
        const auto state = emptyStateOf(list, m_session.texts);
        m_empty.set(state.icon, state.title, state.detail);
        m_emptyNew.set_visible(state.offersNewNote);
        m_emptyImport.set_visible(state.offersImport);
    }
    // The stack would measure it even behind the rows.
    if (isEmpty) m_empty.widget().set_visible(true);
    m_stack.set_visible_child(isEmpty ? "empty" : "rows");
    m_empty.widget().set_visible(isEmpty);
}

void NoteListPane::notesTrashed(const std::vector<Uuid>& ids) {
    const auto& texts = m_session.texts;
    m_toasts.show(texts.format(texts::movedToTrash, {texts.notes(std::ssize(ids))}),
                  texts(texts::undo), [this, ids] {
                      m_session.list.restoreFromTrash(ids);
                      m_session.state.selectedNoteID.set(ids.front());
                      focusList();
                  });
}

void NoteListPane::relabel() {
    const auto& texts = m_session.texts;
    setAccessibleLabel(m_view.rows(), texts(texts::noteList));
    setAccessibleLabel(m_search, texts(texts::search));
    m_search.property_placeholder_text() = texts(texts::search);
    labelControl(m_sidebarButton, texts(texts::showSidebar));
    setLazyMenu(m_sortButton, m_menus.sort());
    setLazyMenu(m_importButton, m_menus.importing());
    labelControl(m_sortButton, texts(texts::sortBy));
    labelControl(m_importButton, texts(texts::importNotes),
                 withShortcutNames(texts(texts::importTooltip)));
    labelControl(m_newButton, texts(texts::newNote),
                 withShortcutNames(texts(texts::newNoteTooltip)));
    m_emptyNew.set_label(texts(texts::newNote));
    m_emptyImport.set_label(texts(texts::importNotes));
    contentChanged();
    m_view.refreshRows();
}

}  // namespace corvel
