#include "app/settings/Preferences.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace corvel {

namespace {

constexpr std::array kEditorModes{std::pair{EditorMode::editor, "editor"},
                                  std::pair{EditorMode::split, "split"},
                                  std::pair{EditorMode::preview, "preview"}};

constexpr std::array kExternalFileUses{
    std::pair{ExternalFileUse::ask, "ask"}, std::pair{ExternalFileUse::import, "import"},
    std::pair{ExternalFileUse::link, "link"}, std::pair{ExternalFileUse::preview, "preview"}};

struct SizeRow {
    UISize size;
    const char* name;
    double scale;
};
constexpr std::array kSizes{SizeRow{UISize::small, "small", 0.85},
                            SizeRow{UISize::normal, "normal", 1.0},
                            SizeRow{UISize::large, "large", 1.2}};

constexpr double kShortestAutoSave = 0.1;

}  // namespace

std::string rawValue(EditorMode mode) {
    for (const auto& [value, name] : kEditorModes) {
        if (value == mode) return name;
    }
    return "split";
}

std::string rawValue(UISize size) {
    for (const auto& row : kSizes) {
        if (row.size == size) return row.name;
    }
    return "normal";
}

std::string rawValue(ExternalFileUse use) {
    for (const auto& [value, name] : kExternalFileUses) {
        if (value == use) return name;
    }
    return "ask";
}

ExternalFileUse externalFileUseFrom(const std::string& name) {
    for (const auto& [value, known] : kExternalFileUses) {
        if (name == known) return value;
    }
    return ExternalFileUse::ask;
}

double fontScale(UISize size) {
    for (const auto& row : kSizes) {
        if (row.size == size) return row.scale;
    }
    return 1.0;
}

UISize Preferences::uiSize() const {
    const auto stored = m_defaults.string("uiSize");
    for (const auto& row : kSizes) {
        if (stored == row.name) return row.size;
    }
    return UISize::normal;
}

double Preferences::autoSaveInterval() const {
    const double seconds = m_defaults.real("autoSaveInterval").value_or(5.0);
    return std::isfinite(seconds) ? std::clamp(seconds, kShortestAutoSave, 3600.0) : 5.0;
}

EditorMode Preferences::defaultEditorMode() const {
    const auto stored = m_defaults.string("defaultEditorMode");
    for (const auto& [value, name] : kEditorModes) {
        if (stored == name) return value;
    }
    return EditorMode::split;
}

std::string Preferences::aiModel(const std::string& provider) const {
    static constexpr std::array kModels{std::pair{"claude", "claude-sonnet-4-5-20250929"},
                                        std::pair{"openai", "gpt-4o"},
                                        std::pair{"gemini", "gemini-2.0-flash"}};
    for (const auto& [name, model] : kModels) {
        if (provider == name) return m_defaults.string("aiModel_" + provider).value_or(model);
    }
    return {};
}

}  // namespace corvel
