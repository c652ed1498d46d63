#include "ui/EditorMenu.h"

#include "app/texts/EditorTexts.h"
#include "ui/Menus.h"

#include <gdk/gdkkeysyms.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/root.h>

namespace corvel {

namespace {

constexpr const char* kPrefix = "text";
constexpr int kBelowUnderline = 4;

}  // namespace

EditorMenu::EditorMenu(Gtk::Widget& owner,
                       Gtk::TextView& view,
                       SpellChecker& spelling,
                       const Localisation& texts)
    : m_view(view)
    , m_spelling(spelling)
    , m_texts(texts)
    , m_popover(owner, [&view] { view.grab_focus(); }) {
    addPointer();
    addKeys();
}

EditorMenu::~EditorMenu() {
    m_view.remove_controller(m_pointer);
    m_view.remove_controller(m_keys);
}

void EditorMenu::addPointer() {
    const auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_SECONDARY);
    click->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    click->signal_pressed().connect([this, gesture = click.get()](int, double x, double y) {
        gesture->set_state(Gtk::EventSequenceState::CLAIMED);
        m_view.grab_focus();
        int left = 0;
        int top = 0;
        m_view.window_to_buffer_coords(Gtk::TextWindowType::WIDGET, static_cast<int>(x),
                                       static_cast<int>(y), left, top);
        GtkTextIter position;
        gtk_text_view_get_iter_at_location(m_view.gobj(), &position, left, top);
        open(position, {static_cast<int>(x), static_cast<int>(y), 1, 1});
    });
    m_pointer = click;
    m_view.add_controller(click);
}

void EditorMenu::addKeys() {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint, Gdk::ModifierType modifiers) {
            const bool isShift = (modifiers & Gdk::ModifierType::SHIFT_MASK) != Gdk::ModifierType{};
            if (key != GDK_KEY_Menu && !(key == GDK_KEY_F10 && isShift)) return false;
            // Keys that a text takes do not show where the focus is.
            if (auto* root = m_view.get_root())
                gtk_window_set_focus_visible(GTK_WINDOW(root->gobj()), TRUE);
            openAtCursor();
            return true;
        },
        false);
    m_keys = keys;
    m_view.add_controller(keys);
}

void EditorMenu::openAtCursor() {
    auto* view = m_view.gobj();
    auto* buffer = gtk_text_view_get_buffer(view);
    auto* insert = gtk_text_buffer_get_insert(buffer);
    gtk_text_view_scroll_mark_onscreen(view, insert);
    GtkTextIter cursor;
    gtk_text_buffer_get_iter_at_mark(buffer, &cursor, insert);
    GdkRectangle place;
    gtk_text_view_get_iter_location(view, &cursor, &place);
    int x = 0;
    int y = 0;
    gtk_text_view_buffer_to_window_coords(view, GTK_TEXT_WINDOW_WIDGET, place.x, place.y, &x, &y);
    open(cursor, {x, y, 1, place.height});
}

void EditorMenu::open(const GtkTextIter& position, const Gdk::Rectangle& at) {
    m_actions = Gio::SimpleActionGroup::create();
    m_mistake = m_view.get_editable() ? m_spelling.mistakeAt(position) : std::nullopt;
    const auto menu = Gio::Menu::create();
    if (m_mistake) addSpelling(*menu);
    addEditing(*menu);
    m_popover.popup(menu, kPrefix, m_actions, m_view, m_mistake ? placeOfMistake(position) : at);
}

// The part of the word that stands in the line of `position`, so that the menu leaves it in sight.
Gdk::Rectangle EditorMenu::placeOfMistake(const GtkTextIter& position) {
    auto* view = m_view.gobj();
    GdkRectangle place;
    GdkRectangle start;
    gtk_text_view_get_iter_location(view, &position, &place);
    auto begin = position;
    gtk_text_iter_set_offset(&begin, m_mistake->begin);
    gtk_text_view_get_iter_location(view, &begin, &start);
    if (start.y == place.y) place.x = start.x;
    int x = 0;
    int y = 0;
    gtk_text_view_buffer_to_window_coords(view, GTK_TEXT_WINDOW_WIDGET, place.x, place.y, &x, &y);
    return {x, y, 1, place.height + kBelowUnderline};
}

void EditorMenu::add(Gio::Menu& menu,
                     const std::string& label,
                     const char* name,
                     bool isEnabled,
                     const Handler& handler) {
    const auto action = m_actions->add_action(name, handler);
    action->set_enabled(isEnabled);
    menu.append(menuLabel(label), std::string(kPrefix) + "." + name);
}

void EditorMenu::addSpelling(Gio::Menu& menu) {
    const auto words = Gio::Menu::create();
    int index = 0;
    for (const auto& word : m_mistake->suggestions) {
        const auto name = "suggestion-" + std::to_string(index++);
        add(*words, word, name.c_str(), true, [this, word] { replaceMistake(word); });
    }
    if (index == 0) add(*words, m_texts(texts::noSuggestions), "no-suggestion", false, [] {});
    menu.append_section(words);
    const auto lists = Gio::Menu::create();
    add(*lists, m_texts(texts::addToDictionary), "add-word", true,
        [this] { m_spelling.add(m_mistake->word); });
    add(*lists, m_texts(texts::ignoreWord), "ignore-word", true,
        [this] { m_spelling.ignore(m_mistake->word); });
    menu.append_section(lists);
}

void EditorMenu::addEditing(Gio::Menu& menu) {
    auto* buffer = gtk_text_view_get_buffer(m_view.gobj());
    const bool isEditable = m_view.get_editable();
    const bool hasSelection = gtk_text_buffer_get_has_selection(buffer) != 0;
    const auto activate = [this](const char* action) {
        return [this, action] { m_view.activate_action(action); };
    };
    const auto clipboard = Gio::Menu::create();
    add(*clipboard, m_texts(texts::cut), "cut", isEditable && hasSelection,
        activate("clipboard.cut"));
    add(*clipboard, m_texts(texts::copy), "copy", hasSelection, activate("clipboard.copy"));
    add(*clipboard, m_texts(texts::paste), "paste", isEditable, activate("clipboard.paste"));
    add(*clipboard, m_texts(texts::deleteText), "delete", isEditable && hasSelection,
        activate("selection.delete"));
    menu.append_section(clipboard);
    const auto history = Gio::Menu::create();
    add(*history, m_texts(texts::undoEdit), "undo",
        isEditable && gtk_text_buffer_get_can_undo(buffer) != 0, activate("text.undo"));
    add(*history, m_texts(texts::redoEdit), "redo",
        isEditable && gtk_text_buffer_get_can_redo(buffer) != 0, activate("text.redo"));
    menu.append_section(history);
    const auto selection = Gio::Menu::create();
    add(*selection, m_texts(texts::selectAll), "select-all", true,
        activate("selection.select-all"));
    menu.append_section(selection);
}

void EditorMenu::replaceMistake(const std::string& word) {
    auto* buffer = gtk_text_view_get_buffer(m_view.gobj());
    GtkTextIter begin;
    GtkTextIter end;
    gtk_text_buffer_get_iter_at_offset(buffer, &begin, m_mistake->begin);
    gtk_text_buffer_get_iter_at_offset(buffer, &end, m_mistake->end);
    const Handle<char, g_free> there(gtk_text_buffer_get_text(buffer, &begin, &end, TRUE));
    if (m_mistake->word != there.get()) return;  // the note is another by now
    gtk_text_buffer_begin_user_action(buffer);
    gtk_text_buffer_delete(buffer, &begin, &end);
    gtk_text_buffer_insert(buffer, &begin, word.data(), static_cast<int>(word.size()));
    gtk_text_buffer_end_user_action(buffer);
}

}  // namespace corvel
