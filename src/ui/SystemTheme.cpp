#include "ui/SystemTheme.h"

#include "themes/BuiltInThemes.h"

#include <adwaita.h>

namespace corvel {

namespace {

void darkChanged(AdwStyleManager*, GParamSpec*, gpointer signal) {
    static_cast<sigc::signal<void()>*>(signal)->emit();
}

}  // namespace

SystemTheme::SystemTheme()
    : m_handler(g_signal_connect(
          adw_style_manager_get_default(), "notify::dark", G_CALLBACK(darkChanged), &m_changed)) {}

SystemTheme::~SystemTheme() {
    g_signal_handler_disconnect(adw_style_manager_get_default(), m_handler);
}

const Theme& SystemTheme::theme() const {
    const bool isDark = adw_style_manager_get_dark(adw_style_manager_get_default()) != FALSE;
    return isDark ? themes::builtInDark() : themes::builtInLight();
}

}  // namespace corvel
