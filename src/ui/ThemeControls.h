#pragma once

#include "themes/Theme.h"
#include "ui/FontDropDown.h"
#include "ui/Labels.h"
#include "ui/Rows.h"

#include <gtkmm/spinbutton.h>
#include <gtkmm/togglebutton.h>
#include <sigc++/signal.h>

#include <string>

namespace corvel {

/// The rows that edit a theme: name, appearance, fifteen colours, fonts and sizes. What is not
/// touched stays as it is in the theme.
class ThemeControls {
public:
    /// All must outlive the controls.
    ThemeControls(Theme& theme, Labels& labels, const Localisation& texts);

    Gtk::Widget& widget() { return m_page.widget(); }
    Gtk::Widget& nameField() { return m_name.widget(); }
    /// A field of the theme changed.
    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    struct ColorField;
    struct NumberField;

    void addName();
    void addAppearance(adw::PreferencesGroup& group);
    void addColors();
    void addColor(adw::PreferencesGroup& group, const ColorField& field);
    void addTypography();
    void addFont(adw::PreferencesGroup& group,
                 const Text& title,
                 FontDropDown::Families families,
                 std::string ThemeTypography::*field);
    void addNumber(adw::PreferencesGroup& group, const NumberField& field);

    Theme& m_theme;
    Labels& m_labels;
    const Localisation& m_texts;
    adw::PreferencesPage m_page;
    adw::EntryRow m_name;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
