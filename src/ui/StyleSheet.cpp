#include "ui/StyleSheet.h"

#include "themes/Color.h"
#include "ui/FontFamily.h"

#include <adwaita.h>
#include <glib.h>
#include <glibmm/ustring.h>
#include <gtkmm/stylecontext.h>

#include <array>
#include <string_view>

namespace corvel {

namespace {

/// The rules that need no value: they refer to the colours defined before them.
constexpr std::string_view kRules = R"css(
.dim-label, row .subtitle { opacity: 0.72; }
text > placeholder { opacity: 0.72; }
.corvel-sidebar, .corvel-sidebar headerbar {
    background-color: @corvel_sidebar; color: @corvel_sidebar_text;
}
.corvel-list, .corvel-list headerbar, .corvel-list listview, .corvel-list list {
    background-color: @corvel_list; color: @window_fg_color;
}
.corvel-note, .corvel-note headerbar { background-color: @corvel_editor; color: @corvel_editor_text; }
.corvel-sidebar headerbar, .corvel-list headerbar, .corvel-note headerbar { box-shadow: none; }
.corvel-sidebar row:selected, .corvel-list row:selected {
    background-color: @accent_bg_color; color: @accent_fg_color;
}
.corvel-sidebar row:selected:focus:focus-visible, .corvel-list row:selected:focus:focus-visible {
    outline: 2px solid @accent_fg_color; outline-offset: -5px;
}
.section-heading { font-size: 82%; font-weight: bold; letter-spacing: 1px; opacity: 0.75; }
.count { font-size: 92%; opacity: 0.75; font-feature-settings: "tnum"; }
.note-row { border-radius: 8px; }
.note-title { font-weight: bold; }
.note-excerpt { font-size: 92%; opacity: 0.8; }
.note-date { font-size: 82%; opacity: 0.8; }
row:selected .dim-label, row:selected .count, row:selected .note-excerpt, row:selected .note-date {
    opacity: 1;
}
.tag-chip {
    font-size: 82%; padding: 0 8px; border-radius: 9px;
    background-color: alpha(@accent_bg_color, 0.14);
}
row:selected .tag-chip { background-color: alpha(black, 0.2); }
.note-name, .note-name:focus-within {
    background: none; border: none; box-shadow: none; outline: none; border-radius: 0;
    padding: 0 32px 0 32px; min-height: 44px; font-size: 150%; font-weight: bold;
}
.mode-switch { padding: 2px; border-radius: 8px; background-color: alpha(currentColor, 0.09); }
.mode-switch > button, .mode-switch > button:hover {
    margin: 0; padding: 2px 12px; min-height: 22px; border: none; border-radius: 6px; font-weight: normal;
    background: none; box-shadow: none;
}
.narrow .mode-switch > button, .narrow .mode-switch > button:hover { padding: 2px 5px; }
.mode-switch > button:checked {
    font-weight: bold; background-color: @corvel_raised; box-shadow: 0 1px 2px alpha(black, 0.2);
}
.narrow .corvel-list headerbar button { min-width: 24px; padding-left: 2px; padding-right: 2px; }
.note-body { border-top: 1px solid @borders; }
paned.note-body > separator { background-color: @borders; background-image: none; box-shadow: none; min-width: 1px; }
textview.note-editor, textview.note-editor text {
    background-color: @corvel_editor; color: @corvel_editor_text; caret-color: @corvel_cursor;
}
textview.note-editor text selection { background-color: @corvel_selection; color: inherit; }
.note-preview { background-color: @corvel_page; }
.find-bar { padding: 6px 8px; }
.find-bar .find-status, .find-bar .find-part { font-size: 92%; font-feature-settings: "tnum"; }
.find-bar .find-status.error { color: @error_color; }
.find-bar .find-switch { padding: 0 6px; font-size: 92%; }
.find-bar button.image-button { min-width: 28px; padding: 0; }
.note-status { border-top: 1px solid @borders; padding: 0 16px; min-height: 29px; font-size: 82%; }
.note-status > * { opacity: 0.8; }
.note-status button { padding: 0 4px; min-height: 22px; font-weight: normal; }
.note-notice { background-color: alpha(@accent_bg_color, 0.12); padding: 6px 8px 6px 32px; }
.palette {
    background-color: @view_bg_color; color: @view_fg_color; border: 1px solid @borders; border-radius: 12px;
    box-shadow: 0 6px 28px alpha(black, 0.3);
}
.palette > entry, .palette > entry:focus-within {
    background: none; border: none; box-shadow: none; outline: none; border-radius: 0;
    border-bottom: 1px solid @borders; min-height: 44px; padding: 0 14px; font-size: 110%;
}
.palette listview { background: none; padding: 6px 0; }
.palette listview > row { margin: 0 6px; padding: 7px 10px; min-height: 0; border-radius: 8px; }
.palette listview > row:selected { background-color: @accent_bg_color; color: @accent_fg_color; }
.palette-nothing { padding: 16px; }
button.pressed { background-color: alpha(currentColor, 0.15); }
.corvel-assistant, .corvel-assistant headerbar { background-color: @corvel_list; color: @window_fg_color; }
.corvel-assistant headerbar { box-shadow: none; }
.assistant-context { padding: 0 8px 4px 16px; min-height: 30px; font-size: 88%; }
.assistant-context > * { opacity: 0.75; }
.assistant-context button { min-height: 24px; min-width: 24px; padding: 0; }
.assistant-context button:hover, .assistant-context button:focus-visible { opacity: 1; }
.assistant-input {
    margin: 4px 12px; padding: 4px; border-radius: 12px; border: 1px solid @borders;
    background-color: @view_bg_color; color: @view_fg_color;
}
.assistant-input:focus-within { border-color: @accent_color; }
.assistant-input textview, .assistant-input text { background: none; }
.assistant-input button { min-width: 28px; min-height: 28px; margin: 3px; padding: 0; }
.assistant-picker { margin: 0 8px 6px; font-size: 88%; }
.assistant-picker > button { padding: 2px 8px; min-height: 24px; font-weight: normal; }
.assistant-actions { padding: 8px 16px; }
.assistant-action { padding: 6px 8px; font-weight: normal; }
.assistant-result-bar { padding: 0 8px 6px; }
.assistant-original { padding: 0 16px 8px; }
.assistant-buttons { padding: 8px 12px; }
.assistant-notice {
    margin: 4px 12px 8px; padding: 10px 12px; border-radius: 12px;
    background-color: alpha(@accent_bg_color, 0.14);
}
.assistant-error { margin: 4px 12px; padding: 6px 4px; color: @error_color; }
.difference-bar { padding: 0 8px 4px 12px; }
.difference-text, .difference-text text { background: none; }
.difference-fold { margin: 4px 0; padding: 0 12px; min-height: 24px; font-size: 88%; font-weight: normal; }
.save-failed { color: @error_color; font-weight: bold; opacity: 1; }
)css";

std::string define(const char* name, const std::string& value) {
    return std::string("@define-color ") + name + " " + value + ";\n";
}

std::string withAlpha(const Color& color) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> alpha{};
    g_ascii_formatd(alpha.data(), alpha.size(), "%.3f", color.alpha);
    return "alpha(" + hexString(color) + ", " + alpha.data() + ")";
}

std::string colorDefinitions(const ThemeColors& colors) {
    const auto read = [](const std::string& text) { return colorFromHex(text); };
    const Color editor = read(colors.editor);
    const Color sidebar = read(colors.sidebar);
    const bool isDark = contrast(editor, {1, 1, 1}) > contrast(editor, {});
    const Color list = mixed(editor, sidebar, 0.5);
    const std::string text = hexString(read(colors.editorText));
    const std::string above = hexString(mixed(editor, {1, 1, 1}, isDark ? 0.88 : 0.5));
    return define("accent_color", hexString(readableOn(read(colors.accent), list))) +
           define("accent_bg_color", hexString(underWhiteText(read(colors.accent)))) +
           define("accent_fg_color", "#FFFFFF") + define("window_bg_color", hexString(list)) +
           define("window_fg_color", text) + define("view_bg_color", hexString(editor)) +
           define("view_fg_color", text) + define("headerbar_bg_color", hexString(editor)) +
           define("headerbar_fg_color", text) + define("popover_bg_color", above) +
           define("popover_fg_color", text) + define("dialog_bg_color", hexString(list)) +
           define("dialog_fg_color", text) + define("card_bg_color", above) +
           define("card_fg_color", text) + define("corvel_sidebar", hexString(sidebar)) +
           define("corvel_sidebar_text", hexString(read(colors.sidebarText))) +
           define("corvel_list", hexString(list)) + define("corvel_editor", hexString(editor)) +
           define("corvel_editor_text", text) +
           define("corvel_raised", hexString(mixed(editor, {1, 1, 1}, isDark ? 0.86 : 1.0))) +
           define("corvel_page", hexString(read(colors.background))) +
           define("corvel_cursor", hexString(read(colors.cursor)));
}

std::string inPoints(double pixels) {
    // Points follow the desktop's text scaling, pixels do not.
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
    g_ascii_formatd(text.data(), text.size(), "%.2fpt", pixels * 0.75);
    return text.data();
}

}  // namespace

StyleSheet::StyleSheet(const Preferences& preferences, ThemeManager& themes)
    : m_preferences(preferences), m_themes(themes), m_provider(Gtk::CssProvider::create()) {
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), m_provider,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    m_themeChanged = themes.signalCurrentChanged().connect([this] { refresh(); });
    m_preferenceChanged = preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "uiSize" || key == "editorFontSize") refresh();
    });
    refresh();
}

StyleSheet::~StyleSheet() {
    if (const auto display = Gdk::Display::get_default()) {
        Gtk::StyleContext::remove_provider_for_display(display, m_provider);
    }
}

std::string StyleSheet::css(const Theme& theme, double fontScale, double editorFontSize) {
    const Color selection = colorFromHex(theme.colors.selection);
    return colorDefinitions(theme.colors) + define("corvel_selection", withAlpha(selection)) +
           "window, tooltip { font-size: " + std::to_string(static_cast<int>(fontScale * 100)) +
           "%; }\ntextview.note-editor { font-family: " +
           quotedFontFamily(theme.typography.monoFontFamily) +
           ", monospace; font-size: " + inPoints(editorFontSize) + "; }\n" + std::string(kRules);
}

void StyleSheet::refresh() {
    const Theme& theme = m_themes.currentTheme();
    adw_style_manager_set_color_scheme(adw_style_manager_get_default(),
                                       theme.appearance == Appearance::dark
                                           ? ADW_COLOR_SCHEME_FORCE_DARK
                                           : ADW_COLOR_SCHEME_FORCE_LIGHT);
    m_provider->load_from_data(
        css(theme, fontScale(m_preferences.uiSize()), m_preferences.editorFontSize()));
}

}  // namespace corvel
