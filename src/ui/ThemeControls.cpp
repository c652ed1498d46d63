#include "ui/ThemeControls.h"

#include "app/texts/ThemeTexts.h"
#include "themes/Color.h"
#include "ui/Accessible.h"

#include <gtkmm/adjustment.h>
#include <gtkmm/box.h>
#include <gtkmm/colorbutton.h>
#include <gtkmm/label.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvel {

struct ThemeControls::ColorField {
    const Text& title;
    std::string ThemeColors::*field;
};

struct ThemeControls::NumberField {
    const Text& title;
    double ThemeTypography::*field;
    double lowest;
    double highest;
    double step;
    unsigned decimals;
};

namespace {

constexpr int kColorLength = 9;  // "#RRGGBBAA"; a file may hold anything

Gdk::RGBA rgbaOf(const std::string& text) {
    const Color color = colorFromHex(text);
    Gdk::RGBA rgba;
    rgba.set_rgba(static_cast<float>(color.red), static_cast<float>(color.green),
                  static_cast<float>(color.blue));
    return rgba;
}

Color colorOf(const Gdk::RGBA& rgba) {
    return {rgba.get_red(), rgba.get_green(), rgba.get_blue(), 1};
}

double rounded(double value, unsigned decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::round(value * scale) / scale;
}

}  // namespace

ThemeControls::ThemeControls(Theme& theme, Labels& labels, const Localisation& texts)
    : m_theme(theme), m_labels(labels), m_texts(texts) {
    addName();
    addColors();
    addTypography();
}

void ThemeControls::addName() {
    adw::PreferencesGroup group;
    m_labels.add(texts::themeName, [group](const auto& text) mutable { group.setTitle(text); });
    m_labels.add(texts::name, [this](const auto& text) { m_name.setTitle(text); });
    m_name.setText(m_theme.name);
    m_name.onChanged([this] {
        m_theme.name = m_name.text();
        m_changed.emit();
    });
    group.add(m_name.widget());
    addAppearance(group);
    m_page.add(group);
}

void ThemeControls::addAppearance(adw::PreferencesGroup& group) {
    adw::ActionRow row;
    m_labels.add(texts::appearance, [row](const auto& text) mutable { row.setTitle(text); });
    auto* light = Gtk::make_managed<Gtk::ToggleButton>();
    auto* dark = Gtk::make_managed<Gtk::ToggleButton>();
    m_labels.add(texts::light, [light](const auto& text) { light->set_label(text); });
    m_labels.add(texts::dark, [dark](const auto& text) { dark->set_label(text); });
    dark->set_group(*light);
    (m_theme.appearance == Appearance::dark ? dark : light)->set_active(true);
    dark->signal_toggled().connect([this, dark] {
        m_theme.appearance = dark->get_active() ? Appearance::dark : Appearance::light;
        m_changed.emit();
    });
    auto& choice = *Gtk::make_managed<Gtk::Box>();
    choice.add_css_class("linked");
    choice.append(*light);
    choice.append(*dark);
    row.addSuffix(choice);
    group.add(row.widget());
}

void ThemeControls::addColors() {
    using Colors = ThemeColors;
    static constexpr std::array<ColorField, 15> kFields{{
        {texts::colorBackground, &Colors::background},
        {texts::colorForeground, &Colors::foreground},
        {texts::colorAccent, &Colors::accent},
        {texts::colorSidebar, &Colors::sidebar},
        {texts::colorSidebarText, &Colors::sidebarText},
        {texts::colorEditor, &Colors::editor},
        {texts::colorEditorText, &Colors::editorText},
        {texts::colorHeading, &Colors::heading},
        {texts::colorLink, &Colors::link},
        {texts::colorCodeBackground, &Colors::codeBackground},
        {texts::colorCodeForeground, &Colors::codeForeground},
        {texts::colorBlockquoteBorder, &Colors::blockquoteBorder},
        {texts::colorBlockquoteText, &Colors::blockquoteText},
        {texts::colorSelection, &Colors::selection},
        {texts::colorCursor, &Colors::cursor},
    }};
    adw::PreferencesGroup group;
    m_labels.add(texts::colors, [group](const auto& text) mutable { group.setTitle(text); });
    for (const auto& field : kFields)
        addColor(group, field);
    m_page.add(group);
}

void ThemeControls::addColor(adw::PreferencesGroup& group, const ColorField& field) {
    adw::ActionRow row;
    auto* value = Gtk::make_managed<Gtk::Label>();
    value->add_css_class("dim-label");
    value->add_css_class("numeric");
    value->set_text(m_theme.colors.*field.field);
    value->set_width_chars(kColorLength);
    value->set_max_width_chars(kColorLength);
    value->set_xalign(1);
    value->set_ellipsize(Pango::EllipsizeMode::END);
    auto* well = Gtk::make_managed<Gtk::ColorButton>(rgbaOf(m_theme.colors.*field.field));
    well->set_use_alpha(false);
    well->signal_color_set().connect([this, well, value, member = field.field] {
        m_theme.colors.*member = hexString(colorOf(well->get_rgba()));
        value->set_text(m_theme.colors.*member);
        m_changed.emit();
    });
    m_labels.add(field.title, [this, row, well](const auto& text) mutable {
        const std::string name = m_texts.format(texts::colorOf, {text});
        row.setTitle(text);
        well->set_title(name);
        // The button inside is what has the focus.
        if (auto* button = well->get_first_child()) setAccessibleLabel(*button, name);
    });
    row.addSuffix(*value);
    row.addSuffix(*well);
    row.setActivatable(*well);
    group.add(row.widget());
}

void ThemeControls::addTypography() {
    adw::PreferencesGroup group;
    m_labels.add(texts::typography, [group](const auto& text) mutable { group.setTitle(text); });
    addFont(group, texts::fontFamily, FontDropDown::Families::all, &ThemeTypography::fontFamily);
    addFont(group, texts::monoFont, FontDropDown::Families::monospace,
            &ThemeTypography::monoFontFamily);
    addNumber(group, {texts::fontSize, &ThemeTypography::baseFontSize, 1, 200, 1, 0});
    addNumber(group, {texts::lineHeight, &ThemeTypography::lineHeight, 0.5, 10, 0.1, 1});
    m_page.add(group);
}

void ThemeControls::addFont(adw::PreferencesGroup& group,
                            const Text& title,
                            FontDropDown::Families families,
                            std::string ThemeTypography::*field) {
    adw::ActionRow row;
    auto* fonts = Gtk::make_managed<FontDropDown>(families, m_theme.typography.*field);
    fonts->signalChosen().connect([this, field](const std::string& family) {
        m_theme.typography.*field = family;
        m_changed.emit();
    });
    m_labels.add(title, [row, fonts](const auto& text) mutable {
        row.setTitle(text);
        setAccessibleLabel(*fonts, text);
    });
    row.addSuffix(*fonts);
    group.add(row.widget());
}

void ThemeControls::addNumber(adw::PreferencesGroup& group, const NumberField& field) {
    adw::ActionRow row;
    const double value = m_theme.typography.*field.field;
    // A file may hold numbers as long as a window; they stay until another one is chosen.
    const double whole = field.decimals == 0 ? std::trunc(value) : value;
    const double shown = std::clamp(whole, field.lowest, field.highest);
    const auto adjustment =
        Gtk::Adjustment::create(shown, field.lowest, field.highest, field.step, 10 * field.step);
    auto* spin = Gtk::make_managed<Gtk::SpinButton>(adjustment, field.step, field.decimals);
    spin->set_numeric(true);
    spin->signal_value_changed().connect(
        [this, spin, member = field.field, decimals = field.decimals] {
            m_theme.typography.*member = rounded(spin->get_value(), decimals);
            m_changed.emit();
        });
    m_labels.add(field.title, [row, spin](const auto& text) mutable {
        row.setTitle(text);
        setAccessibleLabel(*spin, text);
    });
    row.addSuffix(*spin);
    group.add(row.widget());
}

}  // namespace corvel
