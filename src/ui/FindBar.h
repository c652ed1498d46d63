#pragma once

#include "app/editing/NoteSearch.h"
#include "app/settings/Localisation.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/revealer.h>
#include <gtkmm/searchentry.h>
#include <gtkmm/togglebutton.h>
#include <sigc++/signal.h>

#include <string>

namespace corvel {

/// The bar above the editor's text: what to find, how, how many there are, and what to put in its
/// place. It only shows and tells; FindController does the work.
class FindBar : public Gtk::Revealer {
public:
    enum class Action { next, previous, replace, replaceAll };
    enum class Mood { plain, nothingFound, faulty };

    FindBar();

    /// `text` replaces what was looked for last, unless it is empty.
    void open(bool withReplacement, const std::string& text);
    void close();
    bool isOpen() const { return get_reveal_child(); }
    void setReadOnly(bool isReadOnly);
    /// Says that only what is shown of the note is searched.
    void setPartial(bool isPartial);

    editing::SearchQuery query() const;
    std::string replacement() const { return m_replacement.get_text(); }
    void setStatus(const std::string& text, Mood mood);
    void relabel(const Localisation& texts);

    sigc::signal<void()>& signalQueryChanged() { return m_queryChanged; }
    sigc::signal<void(Action)>& signalAction() { return m_action; }
    sigc::signal<void()>& signalClosed() { return m_closed; }

private:
    void build();
    void buildFields();
    void buildFindRow();
    void buildReplaceRow();
    void addKeys();
    void describePart();
    void showReplacement(bool isShown);
    Gtk::Button& actionButton(Gtk::Button& button, Action action);

    Gtk::Box m_all;
    Gtk::Box m_columns;
    Gtk::Box m_fields;
    Gtk::Box m_rows;
    Gtk::Box m_findRow;
    Gtk::Box m_replaceRow;
    Gtk::Box m_switches;
    Gtk::SearchEntry m_entry;
    Gtk::Label m_status;
    Gtk::Button m_previous;
    Gtk::Button m_next;
    Gtk::ToggleButton m_case;
    Gtk::ToggleButton m_words;
    Gtk::ToggleButton m_pattern;
    Gtk::Button m_close;
    Gtk::Entry m_replacement;
    Gtk::Button m_replace;
    Gtk::Button m_replaceAll;
    Gtk::Label m_partial;
    bool m_isReadOnly = false;
    bool m_wantsReplacement = false;
    sigc::signal<void()> m_queryChanged;
    sigc::signal<void(Action)> m_action;
    sigc::signal<void()> m_closed;
};

}  // namespace corvel
