#include "themes/ThemeManager.h"

#include "platform/MainThread.h"
#include "platform/RegularFile.h"
#include "themes/BuiltInThemes.h"
#include "themes/ThemeFile.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kLargestFile = std::size_t{64} << 10;  // a theme takes one kilobyte

bool isThemeFile(const std::filesystem::path& path) {
    const auto extension = path.extension();
    return extension == ".qnotheme" || extension == ".json";
}

}  // namespace

ThemeManager::ThemeManager(UserDefaults& defaults,
                           std::filesystem::path themesDirectory,
                           SystemAppearance isSystemDark)
    : m_defaults(defaults)
    , m_themesDirectory(std::move(themesDirectory))
    , m_isSystemDark(std::move(isSystemDark))
    , m_lightTheme(themes::builtInLight())
    , m_darkTheme(themes::builtInDark())
    , m_currentTheme(m_lightTheme) {
    std::error_code ignored;
    std::filesystem::create_directories(m_themesDirectory, ignored);
    loadThemes();
    restoreSelection();
}

void ThemeManager::loadThemes() {
    checkMainThread();
    std::vector<Theme> themes{m_lightTheme, m_darkTheme, themes::builtInSepia()};
    std::ranges::move(themesOfUser(), std::back_inserter(themes));
    if (themes == m_availableThemes) return;
    m_availableThemes = std::move(themes);
    m_availableChanged.emit();
}

std::vector<Theme> ThemeManager::themesOfUser() const {
    std::vector<Theme> themes;
    std::error_code error;
    std::filesystem::directory_iterator entry(m_themesDirectory, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (!isThemeFile(entry->path())) continue;
        if (auto theme = read(entry->path())) themes.push_back(std::move(*theme));
    }
    return themes;
}

std::optional<Theme> ThemeManager::read(const std::filesystem::path& file) {
    const auto bytes = readRegularFile(file, kLargestFile);
    return bytes ? ThemeFile::decode(*bytes) : std::nullopt;
}

const Theme* ThemeManager::themeWithID(const Uuid& id) const {
    const auto found = std::ranges::find(m_availableThemes, id, &Theme::id);
    return found == m_availableThemes.end() ? nullptr : &*found;
}

void ThemeManager::restoreSelection() {
    const auto id = Uuid::parse(m_defaults.string(selectedThemeKey).value_or(""));
    const Theme* theme = id ? themeWithID(*id) : nullptr;
    if (theme == nullptr) return applySystemAppearance();
    selectTheme(*theme);
}

void ThemeManager::applySystemAppearance() {
    selectTheme(m_isSystemDark() ? m_darkTheme : m_lightTheme);
}

void ThemeManager::selectTheme(const Theme& theme) {
    checkMainThread();
    m_defaults.setString(selectedThemeKey, theme.id.toString());
    if (theme == m_currentTheme) return;
    m_currentTheme = theme;
    m_currentChanged.emit();
}

std::filesystem::path ThemeManager::fileOf(const Theme& theme) const {
    return m_themesDirectory / themeFileName(theme);
}

bool ThemeManager::saveTheme(const Theme& theme) {
    checkMainThread();
    const bool isWritten =
        hasUsableSizes(theme.typography) && replaceFile(fileOf(theme), ThemeFile::encode(theme));
    loadThemes();
    return isWritten;
}

bool ThemeManager::importTheme(const std::filesystem::path& file) {
    auto theme = read(file);
    if (!theme) return false;
    // Only the themes made in code are built in, whatever a file says of itself.
    theme->isBuiltIn = false;
    return saveTheme(*theme);
}

void ThemeManager::deleteTheme(const Theme& theme) {
    checkMainThread();
    if (theme.isBuiltIn) return;
    const Uuid id = theme.id;  // loading replaces the list `theme` may be part of
    std::error_code ignored;
    std::filesystem::remove(fileOf(theme), ignored);
    loadThemes();
    if (m_currentTheme.id == id) selectTheme(m_lightTheme);
}

}  // namespace corvel
