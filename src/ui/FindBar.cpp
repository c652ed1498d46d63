#include "ui/FindBar.h"

#include "app/texts/EditorTexts.h"
#include "ui/Accessible.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>

namespace corvel {

namespace {

constexpr int kEntryCharacters = 4;  // smallest width; the buttons leave the fields the rest
constexpr int kGap = 6;

}  // namespace

FindBar::FindBar()
    : m_all(Gtk::Orientation::VERTICAL, kGap)
    , m_columns(Gtk::Orientation::HORIZONTAL, kGap)
    , m_fields(Gtk::Orientation::VERTICAL, kGap)
    , m_rows(Gtk::Orientation::VERTICAL, kGap)
    , m_findRow(Gtk::Orientation::HORIZONTAL, kGap)
    , m_replaceRow(Gtk::Orientation::HORIZONTAL, kGap) {
    build();
    set_transition_type(Gtk::RevealerTransitionType::SLIDE_DOWN);
    set_transition_duration(120);
    set_child(m_all);
    close();
}

// The fields stand in a column of their own: so Tab goes from one to the other before it goes on to
// the buttons.
void FindBar::build() {
    m_all.add_css_class("find-bar");
    buildFields();
    buildFindRow();
    buildReplaceRow();
    m_columns.append(m_fields);
    m_columns.append(m_rows);
    m_partial.add_css_class("find-part");
    m_partial.set_wrap(true);
    m_partial.set_xalign(0);
    m_partial.set_visible(false);
    m_all.append(m_columns);
    m_all.append(m_partial);
    m_entry.signal_search_changed().connect([this] { m_queryChanged.emit(); });
    m_entry.signal_activate().connect([this] { m_action.emit(Action::next); });
    m_entry.signal_next_match().connect([this] { m_action.emit(Action::next); });
    m_entry.signal_previous_match().connect([this] { m_action.emit(Action::previous); });
    m_replacement.signal_activate().connect([this] { m_action.emit(Action::replace); });
    for (auto* toggle : {&m_case, &m_words, &m_pattern})
        toggle->signal_toggled().connect([this] { m_queryChanged.emit(); });
    m_close.signal_clicked().connect([this] { m_closed.emit(); });
    addKeys();
}

void FindBar::buildFields() {
    m_fields.set_hexpand(true);
    m_entry.set_width_chars(kEntryCharacters);
    m_replacement.set_width_chars(kEntryCharacters);
    m_fields.append(m_entry);
    m_fields.append(m_replacement);
    m_findRow.set_halign(Gtk::Align::END);
    m_replaceRow.set_halign(Gtk::Align::END);
    m_rows.append(m_findRow);
    m_rows.append(m_replaceRow);
    for (auto* column : {&m_fields, &m_rows})
        column->set_homogeneous(true);  // what belongs together stands at one height
}

void FindBar::buildFindRow() {
    m_status.add_css_class("find-status");
    m_status.set_ellipsize(Pango::EllipsizeMode::END);
    m_status.set_width_chars(9);
    m_status.set_xalign(1);
    m_case.set_label("Aa");
    m_words.set_label("|ab|");
    m_pattern.set_label(".*");
    m_switches.add_css_class("linked");
    for (auto* toggle : {&m_case, &m_words, &m_pattern}) {
        toggle->add_css_class("find-switch");
        m_switches.append(*toggle);
    }
    m_previous.set_icon_name("go-up-symbolic");
    m_next.set_icon_name("go-down-symbolic");
    m_close.set_icon_name("window-close-symbolic");
    m_findRow.append(m_status);
    m_findRow.append(actionButton(m_previous, Action::previous));
    m_findRow.append(actionButton(m_next, Action::next));
    m_findRow.append(m_switches);
    m_close.add_css_class("flat");
    m_findRow.append(m_close);
}

void FindBar::buildReplaceRow() {
    m_replaceRow.append(actionButton(m_replace, Action::replace));
    m_replaceRow.append(actionButton(m_replaceAll, Action::replaceAll));
}

Gtk::Button& FindBar::actionButton(Gtk::Button& button, Action action) {
    if (action == Action::previous || action == Action::next) button.add_css_class("flat");
    button.signal_clicked().connect([this, action] { m_action.emit(action); });
    return button;
}

// Escape leaves from every field and button; Shift+Enter looks backwards.
void FindBar::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            const bool isShift = (modifiers & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType{};
            const bool isEnter = key == GDK_KEY_Return || key == GDK_KEY_KP_Enter;
            if (key == GDK_KEY_Escape) {
                m_closed.emit();
                return true;
            }
            const bool isBackwards =
                isEnter && isShift &&
                (m_entry.get_state_flags() & Gtk::StateFlags::FOCUS_WITHIN) != Gtk::StateFlags{};
            if (isBackwards) m_action.emit(Action::previous);
            return isBackwards;
        },
        false);
    m_all.add_controller(keys);
}

void FindBar::open(bool withReplacement, const std::string& text) {
    m_wantsReplacement = withReplacement;
    showReplacement(withReplacement && !m_isReadOnly);
    set_visible(true);
    set_reveal_child(true);
    if (!text.empty()) m_entry.set_text(text);
    m_entry.grab_focus();
    m_entry.select_region(0, -1);
}

void FindBar::close() {
    set_reveal_child(false);
    set_visible(false);
}

void FindBar::setReadOnly(bool isReadOnly) {
    m_isReadOnly = isReadOnly;
    showReplacement(m_wantsReplacement && !isReadOnly);
}

void FindBar::setPartial(bool isPartial) {
    if (m_partial.get_visible() == isPartial) return;
    m_partial.set_visible(isPartial);
    describePart();
}

// Whoever does not see the line hears it with the field.
void FindBar::describePart() {
    Glib::Value<Glib::ustring> description;
    description.init(Glib::Value<Glib::ustring>::value_type());
    description.set(m_partial.get_visible() ? m_partial.get_text() : Glib::ustring());
    m_entry.update_property(Gtk::Accessible::Property::DESCRIPTION, description);
}

void FindBar::showReplacement(bool isShown) {
    m_replacement.set_visible(isShown);
    m_replaceRow.set_visible(isShown);
}

editing::SearchQuery FindBar::query() const {
    return {m_entry.get_text(), m_case.get_active(), m_words.get_active(), m_pattern.get_active()};
}

void FindBar::setStatus(const std::string& text, Mood mood) {
    m_status.set_text(text);
    setTooltip(m_status, text);
    const auto mark = [this](Gtk::Widget& widget, const char* name, bool isOn) {
        if (isOn) {
            widget.add_css_class(name);
        } else {
            widget.remove_css_class(name);
        }
    };
    mark(m_entry, "error", mood != Mood::plain);
    mark(m_status, "error", mood == Mood::faulty);
}

void FindBar::relabel(const Localisation& texts) {
    setAccessibleLabel(m_all, texts(texts::findBar));
    m_partial.set_text(texts(texts::findsInPart));
    describePart();
    setAccessibleLabel(m_entry, texts(texts::findText));
    m_entry.property_placeholder_text() = texts(texts::findText);
    setAccessibleLabel(m_replacement, texts(texts::replaceText));
    m_replacement.set_placeholder_text(texts(texts::replaceText));
    labelControl(m_previous, texts(texts::findPreviousMatch),
                 std::string(texts(texts::findPreviousMatch)) + " (Shift+F3)");
    labelControl(m_next, texts(texts::findNextMatch),
                 std::string(texts(texts::findNextMatch)) + " (F3)");
    labelControl(m_case, texts(texts::matchCase));
    labelControl(m_words, texts(texts::wholeWords));
    labelControl(m_pattern, texts(texts::regularExpression));
    labelControl(m_close, texts(texts::closeFindBar),
                 std::string(texts(texts::closeFindBar)) + " (Esc)");
    m_replace.set_label(texts(texts::replaceOne));
    m_replaceAll.set_label(texts(texts::replaceAll));
}

}  // namespace corvel
