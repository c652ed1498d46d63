#pragma once

#include "platform/UserDefaults.h"
#include "themes/Theme.h"

#include <sigc++/signal.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace corvel {

/// The themes there are, and the one in use: a single object for the whole run, on the main thread.
/// A failure of the file system is never thrown: the state stays as it was.
class ThemeManager {
public:
    static constexpr const char* selectedThemeKey = "selectedThemeID";

    /// Whether the desktop asks for a dark appearance.
    using SystemAppearance = std::function<bool()>;

    /// Loads the themes and chooses one: the stored one, or what the system's appearance asks for.
    /// `themesDirectory` is created when it is missing; without it the built-in themes are all
    /// there is. `defaults` must outlive the manager.
    ThemeManager(UserDefaults& defaults,
                 std::filesystem::path themesDirectory,
                 SystemAppearance isSystemDark);
    ThemeManager(const ThemeManager&) = delete;
    ThemeManager& operator=(const ThemeManager&) = delete;

    const Theme& currentTheme() const { return m_currentTheme; }
    /// The built-in ones first: light, dark, sepia; then the user's, which may share ids and names.
    const std::vector<Theme>& availableThemes() const { return m_availableThemes; }
    const Theme& lightTheme() const { return m_lightTheme; }
    const Theme& darkTheme() const { return m_darkTheme; }
    const std::filesystem::path& themesDirectory() const { return m_themesDirectory; }

    void loadThemes();
    /// Makes the theme of the last run current when it is still there.
    void restoreSelection();
    /// Asks for the appearance now; what the desktop does later changes nothing.
    void applySystemAppearance();
    void selectTheme(const Theme& theme);
    /// Writes the theme's file, in place of another of the same name, and loads again. False when
    /// nothing was written.
    bool saveTheme(const Theme& theme);
    /// Copies a theme file into the themes directory, named by its theme, and loads again. False
    /// when it holds no theme or cannot be written.
    bool importTheme(const std::filesystem::path& file);
    /// Removes the file that has the theme's name, and loads again; nothing for a built-in theme. A
    /// theme from a file of another name stays. When the current theme was asked for, the built-in
    /// light one takes its place.
    void deleteTheme(const Theme& theme);

    /// The file `theme` is saved in.
    std::filesystem::path fileOf(const Theme& theme) const;
    /// The theme a file of any name holds, if it is one.
    static std::optional<Theme> read(const std::filesystem::path& file);

    /// `currentTheme` is another one.
    sigc::signal<void()>& signalCurrentChanged() { return m_currentChanged; }
    /// `availableThemes` is another list.
    sigc::signal<void()>& signalAvailableChanged() { return m_availableChanged; }

private:
    std::vector<Theme> themesOfUser() const;
    const Theme* themeWithID(const Uuid& id) const;

    UserDefaults& m_defaults;
    std::filesystem::path m_themesDirectory;
    SystemAppearance m_isSystemDark;
    const Theme& m_lightTheme;
    const Theme& m_darkTheme;
    Theme m_currentTheme;
    std::vector<Theme> m_availableThemes;
    sigc::signal<void()> m_currentChanged;
    sigc::signal<void()> m_availableChanged;
};

}  // namespace corvel
