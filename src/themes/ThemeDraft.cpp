#include "themes/ThemeDraft.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace corvel {

namespace {

bool isTaken(const std::string& name, const ThemeManager& all) {
    const auto& themes = all.availableThemes();
    return std::ranges::find(themes, name, &Theme::name) != themes.end();
}

std::string freeName(const std::string& name, const ThemeManager& all) {
    std::string candidate = name;
    for (int number = 2; isTaken(candidate, all); ++number)
        candidate = name + " " + std::to_string(number);
    return candidate;
}

}  // namespace

ThemeDraft::ThemeDraft(Theme start, bool isNew) : theme(std::move(start)), m_isNew(isNew) {
    if (m_isNew) theme.id = Uuid::random();
    theme.isBuiltIn = false;
    m_start = theme;
}

ThemeDraft ThemeDraft::editing(const Theme& theme) {
    return {theme, theme.isBuiltIn};
}

ThemeDraft ThemeDraft::copying(const Theme& theme,
                               const std::string& name,
                               const ThemeManager& all) {
    Theme copy = theme;
    copy.name = freeName(name, all);
    return {std::move(copy), true};
}

bool ThemeDraft::hasName() const {
    return theme.name.find_first_not_of(" \t\n") != std::string::npos;
}

bool ThemeDraft::goesIntoItsOwnFile(const ThemeManager& all) const {
    if (m_isNew || all.fileOf(theme) != all.fileOf(m_start)) return false;
    const auto written = ThemeManager::read(all.fileOf(m_start));
    return written && written->id == m_start.id;
}

Theme ThemeDraft::result(const ThemeManager& all) const {
    Theme result = theme;
    // Two files with one id could not be told apart.
    if (!m_isNew && !goesIntoItsOwnFile(all)) result.id = Uuid::random();
    return result;
}

bool ThemeDraft::replacesAnother(const ThemeManager& all) const {
    return !goesIntoItsOwnFile(all) && takesPlaceOfAnother(theme, all);
}

bool takesPlaceOfAnother(const Theme& theme, const ThemeManager& all) {
    std::error_code ignored;
    if (!std::filesystem::exists(all.fileOf(theme), ignored)) return false;
    const auto written = ThemeManager::read(all.fileOf(theme));
    return !written || written->id != theme.id;
}

}  // namespace corvel
