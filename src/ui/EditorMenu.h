#pragma once

#include "app/settings/Localisation.h"
#include "ui/ContextPopover.h"
#include "ui/SpellChecker.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>
#include <gtkmm/textview.h>

#include <functional>
#include <optional>

namespace corvel {

/// The context menu of the editor's text: suggestions for a misspelled word first, then what one
/// does to text. Opened by the right button, Shift+F10 and the Menu key.
class EditorMenu {
public:
    /// `owner` holds the view and has a layout manager.
    EditorMenu(Gtk::Widget& owner,
               Gtk::TextView& view,
               SpellChecker& spelling,
               const Localisation& texts);
    EditorMenu(const EditorMenu&) = delete;
    EditorMenu& operator=(const EditorMenu&) = delete;
    ~EditorMenu();

private:
    using Handler = std::function<void()>;

    void addPointer();
    void addKeys();
    void openAtCursor();
    void open(const GtkTextIter& position, const Gdk::Rectangle& at);
    Gdk::Rectangle placeOfMistake(const GtkTextIter& position);
    void addSpelling(Gio::Menu& menu);
    void addEditing(Gio::Menu& menu);
    void add(Gio::Menu& menu,
             const std::string& label,
             const char* name,
             bool isEnabled,
             const Handler& handler);
    void replaceMistake(const std::string& word);

    Gtk::TextView& m_view;
    SpellChecker& m_spelling;
    const Localisation& m_texts;
    ContextPopover m_popover;
    Glib::RefPtr<Gio::SimpleActionGroup> m_actions;
    std::optional<SpellChecker::Mistake> m_mistake;
    Glib::RefPtr<Gtk::EventController> m_pointer;
    Glib::RefPtr<Gtk::EventController> m_keys;
};

}  // namespace corvel
