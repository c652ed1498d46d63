#pragma once

#include "ui/Adw.h"

#include <cstddef>
#include <string>
#include <vector>

/// Rows of settings: as Adw.h, wrappers that own nothing.
namespace corvel::adw {

/// One setting: a title, perhaps a line below it, and controls at the end.
class ActionRow {
public:
    ActionRow() : m_row(ADW_ACTION_ROW(adw_action_row_new())) {
        // Folders and fonts may be called anything.
        adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(m_row), FALSE);
        adw_action_row_set_title_lines(m_row, 0);
        adw_action_row_set_subtitle_lines(m_row, 0);
    }

    void setTitle(const std::string& title) {
        adw_preferences_row_set_title(ADW_PREFERENCES_ROW(m_row), title.c_str());
    }
    /// More is cut off with an ellipsis.
    void setTitleLines(int lines) { adw_action_row_set_title_lines(m_row, lines); }
    void setSubtitle(const std::string& subtitle) {
        adw_action_row_set_subtitle(m_row, subtitle.c_str());
    }
    void addPrefix(Gtk::Widget& child) { adw_action_row_add_prefix(m_row, child.gobj()); }
    /// At the start; none for null, and then no room is kept for it.
    void setIcon(const char* name) { adw_action_row_set_icon_name(m_row, name); }
    void addSuffix(Gtk::Widget& child) {
        child.set_valign(Gtk::Align::CENTER);
        adw_action_row_add_suffix(m_row, child.gobj());
    }
    /// A click anywhere on the row is one on `child`.
    void setActivatable(Gtk::Widget& child) {
        adw_action_row_set_activatable_widget(m_row, child.gobj());
    }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_row)); }

private:
    AdwActionRow* m_row;
};

/// A field with its name in the frame.
class EntryRow {
public:
    EntryRow() : m_row(ADW_ENTRY_ROW(adw_entry_row_new())) {
        adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(m_row), FALSE);
    }

    void setTitle(const std::string& title) {
        adw_preferences_row_set_title(ADW_PREFERENCES_ROW(m_row), title.c_str());
    }
    std::string text() const { return gtk_editable_get_text(GTK_EDITABLE(m_row)); }
    void setText(const std::string& text) {
        gtk_editable_set_text(GTK_EDITABLE(m_row), text.c_str());
    }
    void onChanged(std::function<void()> changed) { connect(m_row, "changed", std::move(changed)); }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_row)); }

private:
    AdwEntryRow* m_row;
};

/// A field for what nobody shall read over the shoulder.
class PasswordEntryRow {
public:
    PasswordEntryRow() : m_row(ADW_ENTRY_ROW(adw_password_entry_row_new())) {
        adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(m_row), FALSE);
    }

    void setTitle(const std::string& title) {
        adw_preferences_row_set_title(ADW_PREFERENCES_ROW(m_row), title.c_str());
    }
    std::string text() const { return gtk_editable_get_text(GTK_EDITABLE(m_row)); }
    void clear() { gtk_editable_set_text(GTK_EDITABLE(m_row), ""); }
    void addSuffix(Gtk::Widget& child) {
        child.set_valign(Gtk::Align::CENTER);
        adw_entry_row_add_suffix(m_row, child.gobj());
    }
    void onChanged(std::function<void()> changed) { connect(m_row, "changed", std::move(changed)); }
    /// Enter was pressed.
    void onActivated(std::function<void()> activated) {
        connect(m_row, "entry-activated", std::move(activated));
    }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_row)); }

private:
    AdwEntryRow* m_row;
};

/// One of several texts, chosen from a list that opens.
class ComboRow {
public:
    ComboRow() : m_row(ADW_COMBO_ROW(adw_combo_row_new())) {
        adw_preferences_row_set_use_markup(ADW_PREFERENCES_ROW(m_row), FALSE);
    }

    void setTitle(const std::string& title) {
        adw_preferences_row_set_title(ADW_PREFERENCES_ROW(m_row), title.c_str());
    }
    void setChoices(const std::vector<std::string>& texts) {
        GtkStringList* list = gtk_string_list_new(nullptr);
        for (const auto& text : texts)
            gtk_string_list_append(list, text.c_str());
        adw_combo_row_set_model(m_row, G_LIST_MODEL(list));
        g_object_unref(list);
    }
    std::size_t chosen() const { return adw_combo_row_get_selected(m_row); }
    void choose(std::size_t index) {
        adw_combo_row_set_selected(m_row, static_cast<unsigned>(index));
    }
    void onChosen(std::function<void()> chosen) {
        connect(m_row, "notify::selected", std::move(chosen));
    }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_row)); }

private:
    AdwComboRow* m_row;
};

class PreferencesGroup {
public:
    PreferencesGroup() : m_group(ADW_PREFERENCES_GROUP(adw_preferences_group_new())) {}

    /// Both are markup.
    void setTitle(const std::string& title) {
        adw_preferences_group_set_title(m_group, title.c_str());
    }
    void setDescription(const std::string& text) {
        adw_preferences_group_set_description(m_group, text.c_str());
    }
    void setHeaderSuffix(Gtk::Widget& child) {
        adw_preferences_group_set_header_suffix(m_group, child.gobj());
    }
    void add(Gtk::Widget& row) { adw_preferences_group_add(m_group, row.gobj()); }
    void remove(Gtk::Widget& row) { adw_preferences_group_remove(m_group, row.gobj()); }
    AdwPreferencesGroup* get() { return m_group; }

private:
    AdwPreferencesGroup* m_group;
};

class PreferencesPage {
public:
    PreferencesPage() : m_page(ADW_PREFERENCES_PAGE(adw_preferences_page_new())) {}

    void setTitle(const std::string& title) {
        adw_preferences_page_set_title(m_page, title.c_str());
    }
    void setIcon(const char* name) { adw_preferences_page_set_icon_name(m_page, name); }
    /// What the page is found by; not shown.
    void setName(const char* name) { adw_preferences_page_set_name(m_page, name); }
    void add(PreferencesGroup& group) { adw_preferences_page_add(m_page, group.get()); }
    AdwPreferencesPage* get() { return m_page; }
    Gtk::Widget& widget() { return wrapped(GTK_WIDGET(m_page)); }

private:
    AdwPreferencesPage* m_page;
};

}  // namespace corvel::adw
