#include "themes/ThemeFile.h"

#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace corvel {

namespace {

using Json = nlohmann::json;  // keeps the keys of an object sorted

constexpr int kIndent = 2;
constexpr const char* kExtension = ".qnotheme";
constexpr std::size_t kLongestName = 240;  // bytes; file systems take 255 with the extension
constexpr double kTwoTo63 = 9223372036854775808.0;
constexpr double kExactWhole = 9007199254740992.0;  // whole numbers up to here are exact

using ColorField = std::pair<const char*, std::string ThemeColors::*>;
constexpr std::array<ColorField, 15> kColors{{
    {"background", &ThemeColors::background},
    {"foreground", &ThemeColors::foreground},
    {"accent", &ThemeColors::accent},
    {"sidebar", &ThemeColors::sidebar},
    {"sidebarText", &ThemeColors::sidebarText},
    {"editor", &ThemeColors::editor},
    {"editorText", &ThemeColors::editorText},
    {"heading", &ThemeColors::heading},
    {"link", &ThemeColors::link},
    {"codeBackground", &ThemeColors::codeBackground},
    {"codeForeground", &ThemeColors::codeForeground},
    {"blockquoteBorder", &ThemeColors::blockquoteBorder},
    {"blockquoteText", &ThemeColors::blockquoteText},
    {"selection", &ThemeColors::selection},
    {"cursor", &ThemeColors::cursor},
}};

/// A key that is missing or holds another type.
struct Undecodable : std::runtime_error {
    Undecodable() : std::runtime_error("not a theme") {}
};

// 15, not 15.0: as a person would write it.
Json numberOf(double value) {
    const bool isWhole = std::abs(value) < kExactWhole && std::trunc(value) == value;
    return isWhole ? Json(static_cast<std::int64_t>(value)) : Json(value);
}

const Json& member(const Json& object, const char* key) {
    const auto found = object.find(key);  // the end for whatever is no object
    if (found == object.end()) throw Undecodable();
    return *found;
}

std::string textOf(const Json& object, const char* key) {
    const Json& value = member(object, key);
    if (!value.is_string()) throw Undecodable();
    return value.get<std::string>();
}

double doubleOf(const Json& object, const char* key) {
    const Json& value = member(object, key);
    if (!value.is_number()) throw Undecodable();
    return value.get<double>();
}

std::int64_t integerOf(const Json& object, const char* key) {
    const Json& value = member(object, key);
    const bool fits =
        value.is_number_integer() &&
        (!value.is_number_unsigned() || std::in_range<std::int64_t>(value.get<std::uint64_t>()));
    if (!fits) throw Undecodable();
    return value.get<std::int64_t>();
}

bool booleanOf(const Json& object, const char* key) {
    const Json& value = member(object, key);
    if (!value.is_boolean()) throw Undecodable();
    return value.get<bool>();
}

Uuid idOf(const Json& object) {
    const auto id = Uuid::parse(textOf(object, "id"));
    if (!id) throw Undecodable();
    return *id;
}

Appearance appearanceOf(const Json& object) {
    const std::string name = textOf(object, "appearance");
    if (name == "light") return Appearance::light;
    if (name == "dark") return Appearance::dark;
    throw Undecodable();
}

ThemeColors colorsOf(const Json& object) {
    ThemeColors colors;
    for (const auto& [key, field] : kColors) {
        colors.*field = textOf(object, key);
    }
    return colors;
}

ThemeTypography typographyOf(const Json& object) {
    ThemeTypography typography{.fontFamily = textOf(object, "fontFamily"),
                               .monoFontFamily = textOf(object, "monoFontFamily"),
                               .baseFontSize = doubleOf(object, "baseFontSize"),
                               .lineHeight = doubleOf(object, "lineHeight")};
    if (!hasUsableSizes(typography)) throw Undecodable();
    return typography;
}

}  // namespace

std::string ThemeFile::encode(const Theme& theme) {
    Json colors = Json::object();
    for (const auto& [key, field] : kColors) {
        colors[key] = theme.colors.*field;
    }
    const ThemeTypography& type = theme.typography;
    const Json file{{"id", theme.id.toString()},
                    {"name", theme.name},
                    {"version", theme.version},
                    {"appearance", theme.appearance == Appearance::dark ? "dark" : "light"},
                    {"colors", std::move(colors)},
                    {"typography",
                     {{"fontFamily", type.fontFamily},
                      {"monoFontFamily", type.monoFontFamily},
                      {"baseFontSize", numberOf(type.baseFontSize)},
                      {"lineHeight", numberOf(type.lineHeight)}}},
                    {"isBuiltIn", theme.isBuiltIn}};
    return file.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<Theme> ThemeFile::decode(std::string_view bytes) {
    const Json file = Json::parse(bytes, nullptr, false);
    try {
        return Theme{.id = idOf(file),
                     .name = textOf(file, "name"),
                     .version = integerOf(file, "version"),
                     .appearance = appearanceOf(file),
                     .colors = colorsOf(member(file, "colors")),
                     .typography = typographyOf(member(file, "typography")),
                     .isBuiltIn = booleanOf(file, "isBuiltIn")};
    } catch (const Undecodable&) {
        return std::nullopt;
    }
}

bool hasUsableSizes(const ThemeTypography& typography) {
    const double size = typography.baseFontSize;
    return size >= -kTwoTo63 && size < kTwoTo63 && std::isfinite(typography.lineHeight);
}

std::string themeFileName(const Theme& theme) {
    std::string name = text::lowercased(theme.name);
    for (char& character : name) {
        // A slash would lead into another folder.
        if (character == ' ' || character == '/' || character == '\0') character = '-';
    }
    return std::string(text::prefixByBytes(name, kLongestName)) + kExtension;
}

}  // namespace corvel
