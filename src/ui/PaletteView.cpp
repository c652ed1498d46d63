#include "ui/PaletteView.h"

#include "app/Texts.h"
#include "app/texts/PaletteTexts.h"
#include "ui/Accessible.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerfocus.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/root.h>
#include <gtkmm/signallistitemfactory.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

constexpr int kVisibleRows = 10;
constexpr int kWidth = 600;
constexpr int kFromTop = 64;
constexpr int kRowPadding = 14;  // as in the style sheet, above and below
constexpr int kListPadding = 12;

/// A row as the list sees it; what it shows is asked of the view model by its place.
class Row : public Glib::Object {
public:
    Row() : Glib::ObjectBase("CorvelPaletteItem") {}
};

}  // namespace

PaletteView::PaletteView(Session& session, Choose chosen)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_model(session.palette)
    , m_choose(std::move(chosen))
    , m_rows(Gio::ListStore<Glib::Object>::create())
    , m_selection(Gtk::SingleSelection::create(m_rows)) {
    build();
    buildList();
    followKeys();
    m_connections.emplace_back(m_model.signalItemsChanged().connect([this] { itemsChanged(); }));
    m_connections.emplace_back(
        m_model.signalSelectionChanged().connect([this] { selectionChanged(); }));
    m_connections.emplace_back(
        session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "appLanguage") close();
        }));
}

void PaletteView::build() {
    add_css_class("palette");
    set_halign(Gtk::Align::CENTER);
    set_valign(Gtk::Align::START);
    set_margin_top(kFromTop);
    set_size_request(kWidth, -1);
    set_overflow(Gtk::Overflow::HIDDEN);
    set_visible(false);
    m_entry.set_icon_from_icon_name("system-search-symbolic");
    m_entry.set_icon_activatable(false);
    m_entry.signal_changed().connect([this] {
        if (!m_isFilling) m_model.setQuery(m_entry.get_text());
    });
    m_entry.signal_activate().connect([this] { activate(); });
    append(m_entry);
    m_nothing.add_css_class("dim-label");
    m_nothing.add_css_class("palette-nothing");
    append(m_nothing);
    append(m_scroller);
}

void PaletteView::buildList() {
    const auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](const Glib::RefPtr<Gtk::ListItem>& item) {
        item->set_child(*Gtk::make_managed<PaletteRow>());
    });
    factory->signal_bind().connect([this](const Glib::RefPtr<Gtk::ListItem>& item) {
        if (item->get_position() >= m_model.items().size()) return;
        const auto& shown = m_model.items()[item->get_position()];
        dynamic_cast<PaletteRow&>(*item->get_child()).show(shown);
        item->set_activatable(shown.isEnabled);
    });
    m_list.set_factory(factory);
    m_list.set_model(m_selection);
    m_list.set_single_click_activate(true);
    m_list.set_focusable(false);
    m_list.set_can_focus(false);
    m_list.add_css_class("navigation-sidebar");
    m_list.signal_activate().connect([this](guint position) {
        m_model.select(position);
        activate();
    });
    m_scroller.set_child(m_list);
    m_scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    m_scroller.set_propagate_natural_height(true);
}

void PaletteView::followKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType) { return keyPressed(key); }, false);
    add_controller(keys);
    const auto focus = Gtk::EventControllerFocus::create();
    focus->signal_leave().connect([this] {
        m_focusBefore = nullptr;  // the focus went somewhere by itself
        close();
    });
    add_controller(focus);
}

bool PaletteView::keyPressed(guint key) {
    switch (key) {
        case GDK_KEY_Up:
            m_model.moveBy(-1);
            return true;
        case GDK_KEY_Down:
        case GDK_KEY_Tab:
            m_model.moveBy(1);
            return true;
        case GDK_KEY_ISO_Left_Tab:
            m_model.moveBy(-1);
            return true;
        case GDK_KEY_Page_Up:
            m_model.moveBy(-kVisibleRows);
            return true;
        case GDK_KEY_Page_Down:
            m_model.moveBy(kVisibleRows);
            return true;
        case GDK_KEY_Escape:
            close();
            return true;
        default:
            return false;
    }
}

void PaletteView::open(PaletteViewModel::Kind kind) {
    auto* root = get_root();
    if (root == nullptr) return;
    if (!get_visible()) m_focusBefore = root->get_focus();
    m_model.open(kind);
    m_isFilling = true;
    m_entry.set_text("");
    m_isFilling = false;
    relabel();
    set_visible(true);
    fitRows();
    m_entry.grab_focus();
}

void PaletteView::close() {
    if (!get_visible()) return;
    auto* before = std::exchange(m_focusBefore, nullptr);
    if (before != nullptr && before->get_mapped()) before->grab_focus();
    set_visible(false);
}

// Ten rows of whatever height the text has, less in a low window.
void PaletteView::fitRows() {
    PaletteRow sample;
    sample.show({"Ź", "", {}, true, CommandID::quit});
    int least = 0;
    int natural = 0;
    int ignored = 0;
    sample.measure(Gtk::Orientation::VERTICAL, -1, least, natural, ignored, ignored);
    const int height = natural + kRowPadding;
    const int room = std::max(get_parent()->get_height() - kFromTop - 96, 3 * height);
    m_scroller.set_max_content_height(std::min(kVisibleRows * height + kListPadding, room));
}

void PaletteView::itemsChanged() {
    std::vector<Glib::RefPtr<Glib::Object>> rows(m_model.items().size());
    std::ranges::generate(rows,
                          [] { return Glib::make_refptr_for_instance<Glib::Object>(new Row); });
    m_rows->splice(0, m_rows->get_n_items(), rows);
    const bool isEmpty = rows.empty();
    m_scroller.set_visible(!isEmpty);
    m_nothing.set_text(m_session.texts(nothing()));
    m_nothing.set_visible(isEmpty);
    selectionChanged();
}

void PaletteView::selectionChanged() {
    if (m_rows->get_n_items() == 0) return describe();
    const auto position = static_cast<guint>(m_model.selected());
    m_selection->set_selected(position);
    m_list.activate_action("list.scroll-to-item", Glib::Variant<guint32>::create(position));
    describe();
}

// Commands there are always: without a query only the library can be empty.
const Text& PaletteView::nothing() const {
    return m_entry.get_text().empty() ? texts::emptyLibrary : texts::paletteNothing;
}

// The focus stays in the field: what the arrows choose is read out as its description.
void PaletteView::describe() {
    const auto& texts = m_session.texts;
    std::string description = texts(nothing());
    if (!m_model.items().empty()) {
        const auto& item = m_model.items()[m_model.selected()];
        description = item.label;
        if (!item.detail.empty()) description += ", " + item.detail;
        if (!item.isEnabled) description += std::string(", ") + texts(texts::paletteUnavailable);
        description +=
            ", " + texts.format(texts::palettePosition, {std::to_string(m_model.selected() + 1),
                                                         std::to_string(m_model.items().size())});
    }
    Glib::Value<Glib::ustring> value;
    value.init(Glib::Value<Glib::ustring>::value_type());
    value.set(description);
    m_entry.update_property(Gtk::Accessible::Property::DESCRIPTION, value);
}

void PaletteView::activate() {
    const auto target = m_model.chosen();
    if (!target) return;
    close();
    m_choose(*target);
}

void PaletteView::relabel() {
    const auto& texts = m_session.texts;
    const Text& name = m_model.kind() == PaletteViewModel::Kind::commands ? texts::paletteCommands
                                                                          : texts::paletteNotes;
    m_entry.set_placeholder_text(texts(name));
    setAccessibleLabel(m_entry, texts(name));
    setAccessibleLabel(m_list, texts(texts::paletteResults));
    m_nothing.set_text(texts(nothing()));
}

}  // namespace corvel
