#pragma once

#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"
#include "themes/ThemeManager.h"

#include <gtkmm/cssprovider.h>

#include <string>

namespace corvel {

/// Styles every window: one CSS provider for the display, made from the theme's colours and the
/// preferred sizes, and made anew when one of them changes. The toolkit's own colours follow the
/// theme's appearance.
class StyleSheet {
public:
    /// Both must outlive the style sheet.
    StyleSheet(const Preferences& preferences, ThemeManager& themes);
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;
    ~StyleSheet();

    static std::string css(const Theme& theme, double fontScale, double editorFontSize);

private:
    void refresh();

    const Preferences& m_preferences;
    const ThemeManager& m_themes;
    Glib::RefPtr<Gtk::CssProvider> m_provider;
    ScopedConnection m_themeChanged;
    ScopedConnection m_preferenceChanged;
};

}  // namespace corvel
