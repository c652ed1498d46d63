#include "ui/SettingsRows.h"

#include "ui/Accessible.h"

#include <glib.h>
#include <gtkmm/adjustment.h>
#include <gtkmm/box.h>
#include <gtkmm/scale.h>
#include <gtkmm/switch.h>
#include <gtkmm/togglebutton.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace corvel {

namespace {

constexpr int kSliderWidth = 200;

double rounded(double value, double step) {
    // By whole steps to the unit: a sum of tenths is not a tenth.
    const double perUnit = std::round(1 / step);
    return std::round(value * perUnit) / perUnit;
}

}  // namespace

std::string shortNumber(double value, const Localisation& texts) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> digits{};
    g_ascii_formatd(digits.data(), static_cast<int>(digits.size()), "%.1f", value);
    std::string text = digits.data();
    if (text.ends_with(".0")) text.resize(text.size() - 2);
    if (!texts.isEnglish()) std::ranges::replace(text, '.', ',');
    return text;
}

SettingsRows::SettingsRows(Labels& labels,
                           const Localisation& texts,
                           const Preferences& preferences)
    : m_labels(labels)
    , m_texts(texts)
    , m_changed(preferences.signalChanged().connect([this](const std::string&) {
        for (const auto& show : m_shows)
            show();
    })) {}

void SettingsRows::label(adw::ActionRow row,
                         const Text& title,
                         const Text* detail,
                         Gtk::Widget& control) {
    m_labels.add(title, [row, &control](const auto& text) mutable {
        row.setTitle(text);
        setAccessibleLabel(control, text);
    });
    if (detail == nullptr) return;
    m_labels.add(*detail, [row](const auto& text) mutable { row.setSubtitle(text); });
}

void SettingsRows::add(adw::PreferencesGroup& group, const Switch& setting) {
    adw::ActionRow row;
    auto* control = Gtk::make_managed<Gtk::Switch>();
    row.addSuffix(*control);
    row.setActivatable(*control);
    label(row, setting.title, setting.detail, *control);
    group.add(row.widget());
    const auto show = [control, read = setting.read] { control->set_active(read()); };
    show();
    m_shows.emplace_back(show);
    control->property_active().signal_changed().connect(
        [control, write = setting.write] { write(control->get_active()); });
}

void SettingsRows::add(adw::PreferencesGroup& group, const Slider& setting) {
    adw::ActionRow row;
    const double value = setting.read();
    const auto range =
        Gtk::Adjustment::create(value, std::min(setting.lowest, value),
                                std::max(setting.highest, value), setting.step, 10 * setting.step);
    auto* control = Gtk::make_managed<Gtk::Scale>(range);
    control->set_draw_value(false);
    control->set_size_request(kSliderWidth, -1);
    row.addSuffix(*control);
    if (setting.detail != nullptr) {
        m_labels.add(*setting.detail, [row](const auto& text) mutable { row.setSubtitle(text); });
    }
    group.add(row.widget());
    const auto show = [this, row, control, range, &title = setting.title,
                       read = setting.read]() mutable {
        const auto text = m_texts.format(title, {shortNumber(read(), m_texts)});
        row.setTitle(text);
        setAccessibleLabel(*control, text);
        range->set_value(read());
    };
    m_labels.add(show);
    m_shows.emplace_back(show);
    range->signal_value_changed().connect(
        [range, step = setting.step, read = setting.read, write = setting.write] {
            const double chosen = rounded(range->get_value(), step);
            if (chosen != rounded(read(), step)) write(chosen);
        });
}

void SettingsRows::add(adw::PreferencesGroup& group, const Choice& setting) {
    adw::ActionRow row;
    auto& linked = *Gtk::make_managed<Gtk::Box>();
    linked.add_css_class("linked");
    row.addSuffix(linked);
    label(row, setting.title, nullptr, linked);
    group.add(row.widget());
    Gtk::ToggleButton* first = nullptr;
    for (const Option& option : setting.options) {
        auto* button = Gtk::make_managed<Gtk::ToggleButton>();
        if (first != nullptr) button->set_group(*first);
        if (first == nullptr) first = button;
        linked.append(*button);
        m_labels.add(option.label, [button](const auto& text) { button->set_label(text); });
        const auto show = [button, value = option.value, read = setting.read] {
            if (read() == value) button->set_active(true);
        };
        show();
        m_shows.emplace_back(show);
        button->signal_clicked().connect([button, value = option.value, write = setting.write] {
            if (button->get_active()) write(value);
        });
    }
}

}  // namespace corvel
