#pragma once

#include "themes/ThemeManager.h"

#include <string>

namespace corvel {

/// A theme being edited: a copy, written only when it is asked for.
class ThemeDraft {
public:
    /// A draft of a theme of the user's own. A built-in theme is copied.
    static ThemeDraft editing(const Theme& theme);
    /// A draft of a new theme that looks like `theme`. `name` is followed by a number when another
    /// theme has it.
    static ThemeDraft copying(const Theme& theme, const std::string& name, const ThemeManager& all);

    Theme theme;

    bool isNew() const { return m_isNew; }
    bool isEdited() const { return theme != m_start; }
    /// Blank names make no file that would be found again.
    bool hasName() const;
    /// What is to be saved: not built in, and with an id of its own unless it goes into the file
    /// the edited theme came from.
    Theme result(const ThemeManager& all) const;
    /// Saving would put this theme in the place of another one.
    bool replacesAnother(const ThemeManager& all) const;

private:
    ThemeDraft(Theme start, bool isNew);
    bool goesIntoItsOwnFile(const ThemeManager& all) const;

    Theme m_start;
    bool m_isNew;
};

/// True when `theme` would be saved in the file of a theme with another id.
bool takesPlaceOfAnother(const Theme& theme, const ThemeManager& all);

}  // namespace corvel
