#pragma once

#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"
#include "ui/SystemTheme.h"

#include <gtkmm/cssprovider.h>

#include <string>

namespace corvel {

/// Styles every window: one CSS provider for the display, made from the theme's colours and the
/// preferred sizes, and made anew when one of them changes.
class StyleSheet {
public:
    explicit StyleSheet(const Preferences& preferences);  // must outlive the style sheet
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;
    ~StyleSheet();

    static std::string css(const Theme& theme, double fontScale, double editorFontSize);

private:
    void refresh();

    const Preferences& m_preferences;
    SystemTheme m_theme;
    Glib::RefPtr<Gtk::CssProvider> m_provider;
    ScopedConnection m_themeChanged;
    ScopedConnection m_preferenceChanged;
};

}  // namespace corvel
