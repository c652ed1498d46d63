#include "ui/NoteListView.h"

#include "app/Texts.h"
#include "ui/Accessible.h"
#include "ui/NoteDrag.h"
#include "ui/RelativeDate.h"

#include <glibmm/main.h>
#include <gtkmm/dragsource.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/root.h>
#include <gtkmm/widgetpaintable.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

/// A change of more rows than this drops a selection of several notes rather than follow it.
constexpr std::size_t kFollowed = 2000;

RowId rowIdOf(const Glib::RefPtr<Glib::ObjectBase>& item) {
    const auto note = std::dynamic_pointer_cast<NoteItem>(item);
    return note ? note->row() : 0;
}

}  // namespace

NoteListView::NoteListView(Session& session)
    : m_session(session)
    , m_store(NoteListStore::create(session.list))
    , m_selection(Gtk::MultiSelection::create(m_store)) {
    set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    set_vexpand(true);
    set_child(m_rows);
    m_rows.add_css_class("navigation-sidebar");
    m_rows.add_css_class("note-rows");
    setUpFactory();
    m_rows.set_model(m_selection);
    m_rows.signal_activate().connect([this](guint) { m_activated.emit(); });
    m_selection->signal_selection_changed().connect([this](guint, guint) { selectionChanged(); });
    get_vadjustment()->signal_value_changed().connect([this] { askForMore(); });

    auto& list = session.list;
    m_connections.emplace_back(
        list.signalSpliced().connect([this](const ListSplice& change) { spliced(change); }));
    m_connections.emplace_back(list.signalReplaced().connect([this] { replaced(); }));
    m_connections.emplace_back(list.signalRowsChanged().connect([this] { refreshRows(); }));
    m_connections.emplace_back(
        session.state.selectedNoteID.signalChanged().connect([this] { stateSelectionChanged(); }));
    m_shown = current();
    followKeys();
    growLater();
    stateSelectionChanged();
    refreshAtMidnight();
}

// Keys go to the end of the list or select all of it: it must be all there.
void NoteListView::followKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint, guint, Gdk::ModifierType) {
            m_store->growPast(m_session.list.size());
            return false;
        },
        false);
    m_rows.add_controller(keys);
}

// A list begins with a screenful; each frame after the first that shows it brings some more rows.
void NoteListView::growLater() {
    if (m_store->isWhole() || std::exchange(m_isGrowing, true)) return;
    m_rows.add_tick_callback([this, isFirst = true](const auto&) mutable {
        if (!std::exchange(isFirst, false)) m_store->grow();
        m_isGrowing = !m_store->isWhole();
        return m_isGrowing;
    });
}

void NoteListView::setUpFactory() {
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([this](const Item& item) { setUpRow(item); });
    factory->signal_bind().connect([this](const Item& item) { bindRow(item); });
    factory->signal_unbind().connect([this](const Item& item) { m_bound.erase(item); });
    m_rows.set_factory(factory);
}

void NoteListView::setUpRow(const Item& item) {
    auto* row = Gtk::make_managed<NoteRow>();
    const auto source = Gtk::DragSource::create();
    source->set_actions(Gdk::DragAction::COPY | Gdk::DragAction::MOVE);
    source->signal_prepare().connect([this, row](double, double) { return dragContent(row); },
                                     false);
    source->signal_drag_begin().connect([row, raw = source.get()](const auto&) {
        raw->set_icon(Gtk::WidgetPaintable::create(*row), 0, 0);
    });
    row->add_controller(source);
    item->set_child(*row);
}

void NoteListView::bindRow(const Item& item) {
    m_bound.insert(item);
    auto* row = dynamic_cast<NoteRow*>(item->get_child());
    if (row == nullptr) return;
    row->show(m_session.list.summaryOf(rowIdOf(item->get_item())), m_session.texts);
}

void NoteListView::refreshRows() {
    for (const auto& item : std::set<Item>(m_bound)) {
        bindRow(item);
    }
}

std::optional<guint> NoteListView::positionOf(const NoteRow* row) const {
    for (const auto& item : m_bound) {
        if (item->get_child() == row) return item->get_position();
    }
    return std::nullopt;
}

NoteRow* NoteListView::rowAt(guint position) const {
    for (const auto& item : m_bound) {
        if (item->get_position() == position) return dynamic_cast<NoteRow*>(item->get_child());
    }
    return nullptr;
}

std::vector<Uuid> NoteListView::selectedNotes() const {
    const auto selected = m_selection->get_selection();
    std::vector<std::size_t> positions;
    for (guint i = 0; i < selected->get_size(); ++i)
        positions.push_back(selected->get_nth(i));
    return m_session.list.idsAt(positions);
}

Glib::RefPtr<Gdk::ContentProvider> NoteListView::dragContent(const NoteRow* row) const {
    const auto position = positionOf(row);
    if (!position) return {};
    if (m_selection->is_selected(*position)) return NoteDrag::content(selectedNotes());
    const auto note = m_session.list.summaryAt(*position);
    return note ? NoteDrag::content({note->id}) : Glib::RefPtr<Gdk::ContentProvider>{};
}

bool NoteListView::selectAt(double x, double y) {
    for (auto* widget = m_rows.pick(x, y); widget != nullptr && widget != &m_rows;
         widget = widget->get_parent()) {
        // The pointer may be over the row's margin: then the list's row widget was picked.
        auto* row = dynamic_cast<NoteRow*>(widget);
        if (row == nullptr) row = dynamic_cast<NoteRow*>(widget->get_first_child());
        const auto position = row != nullptr ? positionOf(row) : std::nullopt;
        if (!position) continue;
        if (!m_selection->is_selected(*position)) m_selection->select_item(*position, true);
        return true;
    }
    return false;
}

Gdk::Rectangle NoteListView::focusedRectangle() const {
    const auto selected = m_selection->get_selection();
    const guint first = selected->is_empty() ? 0 : selected->get_minimum();
    for (const auto& item : m_bound) {
        auto* row = item->get_child();
        if (row == nullptr || row->get_parent() == nullptr) continue;
        if (!row->get_parent()->has_focus() && item->get_position() != first) continue;
        double x = 0;
        double y = 0;
        auto& list = const_cast<Gtk::ListView&>(m_rows);
        row->translate_coordinates(list, 0, row->get_height() / 2.0, x, y);
        return {static_cast<int>(x) + row->get_width() / 4, static_cast<int>(y), 1, 1};
    }
    return {0, 0, 1, 1};
}

void NoteListView::selectionChanged() {
    if (m_isUpdating) return;
    const auto selected = m_selection->get_selection();
    std::optional<NoteSummary> note;
    if (selected->get_size() == 1) note = m_session.list.summaryAt(selected->get_minimum());
    m_selectedRow = note ? std::optional(note->row) : std::nullopt;
    const auto left =
        selected->get_size() > 1 ? m_session.state.selectedNoteID.get() : std::nullopt;
    const auto place = left ? m_session.list.positionOf(*left) : std::nullopt;
    const bool isKept = place && selected->contains(static_cast<guint>(*place));
    m_session.state.selectedNoteID.set(note ? std::optional(note->id) : std::nullopt);
    if (isKept) addToSelection(*left);
    tellCount();
}

// A note that is left is saved, which makes its row anew.
void NoteListView::addToSelection(const Uuid& id) {
    const auto position = m_session.list.positionOf(id);
    if (!position) return;
    m_isUpdating = true;
    m_selection->select_item(static_cast<guint>(*position), false);
    m_isUpdating = false;
}

void NoteListView::tellCount() {
    m_session.state.selectedCount.set(m_selection->get_selection()->get_size());
}

void NoteListView::stateSelectionChanged() {
    const auto& id = m_session.state.selectedNoteID.get();
    if (!id) {
        if (m_selection->get_selection()->get_size() == 1) m_selection->unselect_all();
        m_selectedRow.reset();
        return;
    }
    const auto position = m_session.list.positionOf(*id);
    if (!position) return;
    const auto selected = m_selection->get_selection();
    if (selected->get_size() == 1 && selected->contains(static_cast<guint>(*position))) return;
    selectInList(*position);
    scrollTo(*position);
}

void NoteListView::selectInList(std::size_t position) {
    m_selectedRow = m_session.list.rowAt(position);
    m_isUpdating = true;
    selectRow(position);
    m_isUpdating = false;
    tellCount();
}

// By the list rather than its model: a range that is extended later starts here.
void NoteListView::selectRow(std::size_t position) {
    const auto row = static_cast<guint32>(position);
    m_store->growPast(position);
    m_rows.activate_action(
        "list.select-item",
        Glib::Variant<std::tuple<guint32, bool, bool>>::create({row, false, false}));
    if (!m_selection->is_selected(row)) m_selection->select_item(row, true);
}

NoteListView::Shown NoteListView::current() const {
    const auto& list = m_session.list;
    return {list.filter(), list.sortOption(), list.searchQuery()};
}

void NoteListView::spliced(const ListSplice& change) {
    const bool isAnother = m_shown != current();
    const bool hadSelection = !m_selection->get_selection()->is_empty();
    m_isUpdating = true;
    if (isAnother || change.added > kFollowed) {
        m_store->spliceAnew(change);
    } else {
        m_store->splice(change);
    }
    growLater();
    m_isUpdating = false;
    tellCount();
    if (isAnother) return;
    if (m_isRemoving) {
        if (hadSelection && !m_removedAt) m_removedAt = change.position;
    } else {
        keepSelection(change.position, hadSelection);
    }
}

void NoteListView::removing(const std::function<void()>& operation) {
    m_isRemoving = true;
    m_removedAt.reset();
    operation();
    if (m_removedAt) keepSelection(*m_removedAt, true);
    m_isRemoving = false;
}

void NoteListView::replaced() {
    const auto now = current();
    if (now == m_shown) return;
    const bool isOtherFilter = now.filter != m_shown.filter;
    m_shown = now;
    get_vadjustment()->set_value(0);
    const auto& id = m_session.state.selectedNoteID.get();
    if (id && m_session.list.positionOf(*id)) {
        stateSelectionChanged();
    } else if (isOtherFilter && !m_session.list.isSearching()) {
        // A search only looks; choosing a filter opens its first note.
        if (m_session.list.size() > 0) {
            select(0);
        } else {
            m_session.state.selectedNoteID.set(std::nullopt);
        }
    }
}

bool NoteListView::hasLeftForGood() const {
    if (m_isRemoving || !m_selectedRow) return true;
    const auto note = m_session.list.summaryOf(*m_selectedRow);
    if (!note) return true;
    if (m_session.list.isSearching()) return note->isTrashed;
    const auto kind = m_session.list.filter().kind;
    return note->isTrashed != (kind == SidebarFilter::Kind::trash) ||
           (!note->isTrashed && note->isArchived != (kind == SidebarFilter::Kind::archived));
}

void NoteListView::keepSelection(std::size_t near, bool hadSelection) {
    const auto selected = m_selection->get_selection();
    const auto& id = m_session.state.selectedNoteID.get();
    if (const auto position = id ? m_session.list.positionOf(*id) : std::nullopt) {
        if (selected->contains(static_cast<guint>(*position))) return;
        // A row that moved, as by being pinned, went and came back: the focus fell to its
        // neighbour.
        auto* root = get_root();
        const auto* focus = root != nullptr ? root->get_focus() : nullptr;
        const bool hadFocus = focus != nullptr && focus->is_ancestor(m_rows);
        selectInList(*position);
        if (hadFocus) focusRow(*position);
        return;
    }
    // A note that an edit took off the list (its tag was deleted) stays open: nothing jumps while
    // one types.
    if (!hadSelection || !selected->is_empty() || !hasLeftForGood()) return;
    const auto size = m_session.list.size();
    if (size == 0) {
        m_session.state.selectedNoteID.set(std::nullopt);
        return;
    }
    const auto next = std::min(near, size - 1);
    select(next);
    focusRow(next);
}

void NoteListView::select(std::size_t position) {
    selectRow(position);
    selectionChanged();
}

void NoteListView::scrollTo(std::size_t position) {
    m_store->growPast(position);
    // The list model tells of a change before the rows have followed it.
    if (position >= m_selection->get_n_items()) return;
    if (!m_rows.get_mapped() || m_rows.get_height() == 0) return scrollLater();
    m_rows.activate_action("list.scroll-to-item",
                           Glib::Variant<guint32>::create(static_cast<guint32>(position)));
}

// Before rows have a height, the list takes a row far down for one in sight, and then shows no row
// but the first.
void NoteListView::scrollLater() {
    if (std::exchange(m_isScrollDue, true)) return;
    m_rows.add_tick_callback([this](const auto&) {
        if (m_rows.get_height() == 0) return true;
        m_isScrollDue = false;
        const auto& id = m_session.state.selectedNoteID.get();
        if (const auto position = id ? m_session.list.positionOf(*id) : std::nullopt) {
            scrollTo(*position);
        }
        return false;
    });
}

void NoteListView::focusRow(std::size_t position) {
    scrollTo(position);
    auto* row = rowAt(static_cast<guint>(position));
    if (row == nullptr || row->get_parent() == nullptr || !row->get_parent()->grab_focus()) {
        m_rows.grab_focus();
    }
}

void NoteListView::enter() {
    if (m_selection->get_selection()->is_empty() && m_selection->get_n_items() > 0) select(0);
    focusSelected();
}

void NoteListView::focusSelected() {
    const auto selected = m_selection->get_selection();
    if (selected->is_empty()) {
        m_rows.grab_focus();
    } else {
        focusRow(selected->get_minimum());
    }
}

void NoteListView::askForMore() {
    if (!m_session.list.isSearching() || !m_store->isWhole()) return;
    const auto adjustment = get_vadjustment();
    const double left =
        adjustment->get_upper() - adjustment->get_value() - adjustment->get_page_size();
    if (left < 2 * adjustment->get_page_size()) m_session.list.showMore();
}

void NoteListView::refreshAtMidnight() {
    const auto now = Date::now();
    const auto seconds = std::max<std::int64_t>(1, nextMidnight(now).seconds() - now.seconds() + 1);
    m_midnight = Glib::signal_timeout().connect_seconds(
        [this] {
            refreshRows();
            refreshAtMidnight();
            return false;
        },
        static_cast<unsigned>(seconds));
}

}  // namespace corvel
