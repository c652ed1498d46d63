#pragma once

#include "app/settings/Localisation.h"
#include "platform/ScopedConnection.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace corvel {

/// The texts of one window: set when they are added, and again whenever the language changes.
class Labels {
public:
    Labels(const Localisation& texts, const Preferences& preferences)
        : m_texts(texts)
        , m_changed(preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "appLanguage") apply();
        })) {}
    Labels(const Labels&) = delete;
    Labels& operator=(const Labels&) = delete;
    ~Labels() = default;

    /// `text` must outlive the labels, as texts of the catalogue do.
    void add(const Text& text, std::function<void(const std::string&)> set) {
        add([this, &text, set = std::move(set)] { set(m_texts(text)); });
    }
    void add(std::function<void()> set) {
        set();
        m_setters.push_back(std::move(set));
    }

private:
    void apply() const {
        for (const auto& set : m_setters)
            set();
    }

    const Localisation& m_texts;
    std::vector<std::function<void()>> m_setters;
    ScopedConnection m_changed;
};

}  // namespace corvel
