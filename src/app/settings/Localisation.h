#pragma once

#include "app/settings/Preferences.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corvel {

/// One text of the interface in both languages. All of them stand in Texts.h.
struct Text {
    const char* polish;
    const char* english;
};

/// Chooses texts by the preference `appLanguage`, read at each use: English exactly when it is
/// "en".
class Localisation {
public:
    explicit Localisation(const Preferences& preferences) : m_preferences(preferences) {}

    bool isEnglish() const { return m_preferences.appLanguage() == "en"; }
    /// "en" or "pl".
    const char* languageCode() const { return isEnglish() ? "en" : "pl"; }

    const char* operator()(const Text& text) const {
        return isEnglish() ? text.english : text.polish;
    }
    /// `text` with every "%1", "%2" … replaced by the arguments in order.
    std::string format(const Text& text, const std::vector<std::string>& arguments) const;

    /// "1 notatka", "2 notatki", "5 notatek"; "1 note", "2 notes".
    std::string notes(std::int64_t count) const;
    /// "1 słowo", "2 słowa", "5 słów"; "1 word", "2 words".
    std::string words(std::int64_t count) const;

private:
    const Preferences& m_preferences;
};

/// A text with its shortcut as people here know it: "⌘" becomes "Ctrl+", "⇧" becomes "Shift+".
std::string withShortcutNames(std::string text);

}  // namespace corvel
