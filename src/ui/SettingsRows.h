#pragma once

#include "app/settings/Localisation.h"
#include "ui/Labels.h"
#include "ui/Rows.h"

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// Rows bound to preferences: what a control says is written at once, and a preference changed
/// elsewhere is shown at once.
class SettingsRows {
public:
    struct Switch {
        const Text& title;
        const Text* detail;  ///< none: null
        std::function<bool()> read;
        std::function<void(bool)> write;
    };
    struct Slider {
        const Text& title;  ///< with "%1" where the value stands
        const Text* detail;
        double lowest;
        double highest;
        double step;
        std::function<double()> read;
        std::function<void(double)> write;
    };
    struct Option {
        std::string value;
        const Text& label;
    };
    struct Choice {
        const Text& title;
        std::vector<Option> options;
        std::function<std::string()> read;
        std::function<void(const std::string&)> write;
    };

    /// All must outlive the rows.
    SettingsRows(Labels& labels, const Localisation& texts, const Preferences& preferences);

    void add(adw::PreferencesGroup& group, const Switch& setting);
    void add(adw::PreferencesGroup& group, const Slider& setting);
    void add(adw::PreferencesGroup& group, const Choice& setting);

private:
    void label(adw::ActionRow row, const Text& title, const Text* detail, Gtk::Widget& control);

    Labels& m_labels;
    const Localisation& m_texts;
    std::vector<std::function<void()>> m_shows;
    ScopedConnection m_changed;
};

/// `value` with at most one decimal, as the language of the interface writes it.
std::string shortNumber(double value, const Localisation& texts);

}  // namespace corvel
