#include "themes/BuiltInThemes.h"
#include "themes/ThemeFile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <string>

namespace corvel {
namespace {

using Json = nlohmann::json;

Json lightFile() {
    return Json::parse(ThemeFile::encode(themes::builtInLight()));
}

bool isTheme(const Json& file) {
    return ThemeFile::decode(file.dump()).has_value();
}

TEST(ThemeFile, GivesBackEveryFieldOfWhatWasWritten) {
    Theme theme = themes::builtInDark();
    theme.name = "Zażółć \"gęślą\" \\ </style>";
    theme.version = -7;
    theme.isBuiltIn = false;
    theme.typography = {
        .fontFamily = "Lato", .monoFontFamily = "Hack", .baseFontSize = 15.9, .lineHeight = 1.6};
    EXPECT_EQ(ThemeFile::decode(ThemeFile::encode(theme)), theme);
    EXPECT_EQ(ThemeFile::decode(ThemeFile::encode(themes::builtInSepia())), themes::builtInSepia());
}

TEST(ThemeFile, IsWrittenForPeopleToRead) {
    Theme theme = themes::builtInLight();
    theme.id = *Uuid::parse("0a1b2c3d-0000-4000-8000-00000000ffff");
    EXPECT_EQ(ThemeFile::encode(theme), R"({
  "appearance": "light",
  "colors": {
    "accent": "#007AFF",
    "background": "#FFFFFF",
    "blockquoteBorder": "#007AFF",
    "blockquoteText": "#555555",
    "codeBackground": "#F0F0F0",
    "codeForeground": "#D63384",
    "cursor": "#007AFF",
    "editor": "#FFFFFF",
    "editorText": "#1A1A1A",
    "foreground": "#1A1A1A",
    "heading": "#111111",
    "link": "#007AFF",
    "selection": "#007AFF33",
    "sidebar": "#F5F5F5",
    "sidebarText": "#333333"
  },
  "id": "0A1B2C3D-0000-4000-8000-00000000FFFF",
  "isBuiltIn": true,
  "name": "Corvel Light",
  "typography": {
    "baseFontSize": 15,
    "fontFamily": "SF Pro Text",
    "lineHeight": 1.6,
    "monoFontFamily": "SF Mono"
  },
  "version": 1
}
)");
}

TEST(ThemeFile, NeedsEveryKeyAndNoOther) {
    const Json whole = lightFile();
    for (const char* group : {"", "colors", "typography"}) {
        const Json& members = *group == '\0' ? whole : whole[group];
        for (const auto& [key, value] : members.items()) {
            Json file = whole;
            (*group == '\0' ? file : file[group]).erase(key);
            EXPECT_FALSE(isTheme(file)) << "without " << group << " " << key;
        }
    }
    Json more = whole;
    more["author"] = "someone";
    more["colors"]["shadow"] = 5;
    EXPECT_TRUE(isTheme(more));
}

TEST(ThemeFile, RefusesWrongTypesAndValuesOutOfRange) {
    const auto with = [](const char* pointer, Json value) {
        Json file = lightFile();
        file[Json::json_pointer(pointer)] = std::move(value);
        return isTheme(file);
    };
    EXPECT_TRUE(with("/typography/baseFontSize", 13.7));
    EXPECT_TRUE(with("/typography/lineHeight", 2));
    EXPECT_TRUE(with("/id", "0a1b2c3d-0000-4000-8000-00000000ffff"));

    EXPECT_FALSE(with("/appearance", "Dark"));
    EXPECT_FALSE(with("/id", "not an id"));
    EXPECT_FALSE(with("/name", nullptr));
    EXPECT_FALSE(with("/isBuiltIn", 1));
    EXPECT_FALSE(with("/version", 1.5));
    EXPECT_FALSE(with("/version", "1"));
    EXPECT_FALSE(with("/version", std::numeric_limits<std::uint64_t>::max()));
    EXPECT_FALSE(with("/colors", Json::array({"#000000"})));
    EXPECT_FALSE(with("/colors/link", 255));
    EXPECT_FALSE(with("/typography", "SF Mono"));
    EXPECT_FALSE(with("/typography/fontFamily", Json::object()));
    EXPECT_FALSE(with("/typography/baseFontSize", "15"));
    EXPECT_FALSE(with("/typography/baseFontSize", 1e19));
    EXPECT_FALSE(with("/typography/baseFontSize", std::numeric_limits<std::uint64_t>::max()));
    EXPECT_FALSE(with("/typography/lineHeight", true));
}

TEST(ThemeFile, RefusesWhatIsNoJson) {
    const std::string whole = ThemeFile::encode(themes::builtInLight());
    for (std::size_t length = 0; length + 2 < whole.size(); length += 7) {
        EXPECT_FALSE(ThemeFile::decode(whole.substr(0, length))) << length;
    }
    std::string huge = whole;
    huge.replace(huge.find("15"), 2, "1e999");
    std::string broken = whole;
    broken.replace(broken.find("Corvel"), 2, "\xff\xfe");
    for (const std::string& text :
         {huge, broken, whole + "x", std::string("[]"), std::string("null"),
          std::string(1'000'000, '['), std::string("\0\0", 2)}) {
        EXPECT_FALSE(ThemeFile::decode(text)) << text.substr(0, 40);
    }
}

TEST(ThemeFile, IsNamedAfterItsThemeAndStaysInItsFolder) {
    const auto nameOf = [](const std::string& name) {
        Theme theme = themes::builtInLight();
        theme.name = name;
        return themeFileName(theme);
    };
    EXPECT_EQ(nameOf("My Night Theme"), "my-night-theme.qnotheme");
    EXPECT_EQ(nameOf("ŁAGODNY  Świt"), "łagodny--świt.qnotheme");
    EXPECT_EQ(nameOf("../../escape"), "..-..-escape.qnotheme");
    EXPECT_EQ(nameOf(std::string("a\0b", 3)), "a-b.qnotheme");
    const std::string longest = nameOf(std::string(5000, 'x') + "ż");
    EXPECT_LT(longest.size(), 256U);
    EXPECT_TRUE(longest.ends_with("x.qnotheme"));
}

}  // namespace
}  // namespace corvel
