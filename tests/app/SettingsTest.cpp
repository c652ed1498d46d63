#include "app/settings/Localisation.h"
#include "app/settings/Preferences.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvel {
namespace {

struct Settings {
    TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "a" / "preferences.ini"};
    Preferences preferences{defaults};
    Localisation texts{preferences};
};

TEST(Preferences, EveryKeyHasItsDefault) {
    const Settings settings;
    const auto& preferences = settings.preferences;
    EXPECT_EQ(preferences.appLanguage(), "pl");
    EXPECT_EQ(preferences.uiSize(), UISize::normal);
    EXPECT_EQ(preferences.editorFontSize(), 15.0);
    EXPECT_EQ(preferences.editorLineSpacing(), 1.6);
    EXPECT_TRUE(preferences.autoCloseBrackets());
    EXPECT_TRUE(preferences.spellChecking());
    EXPECT_EQ(preferences.autoSaveInterval(), 5.0);
    EXPECT_EQ(preferences.defaultEditorMode(), EditorMode::split);
    EXPECT_TRUE(preferences.loadRemoteImages());
    EXPECT_EQ(preferences.trashRetentionDays(), 30);
    EXPECT_EQ(preferences.aiProvider(), "claude");
    EXPECT_EQ(preferences.aiModel("claude"), "claude-sonnet-4-5-20250929");
    EXPECT_EQ(preferences.aiModel("openai"), "gpt-4o");
    EXPECT_EQ(preferences.aiModel("gemini"), "gemini-2.0-flash");
    EXPECT_EQ(preferences.aiModel("nobody"), "");
}

TEST(Preferences, AreWrittenAtOnceAndReadBack) {
    Settings settings;
    std::vector<std::string> changed;
    settings.preferences.signalChanged().connect(
        [&](const std::string& key) { changed.push_back(key); });
    settings.preferences.setUISize(UISize::large);
    settings.preferences.setUISize(UISize::large);
    settings.preferences.setEditorFontSize(13.5);
    settings.preferences.setDefaultEditorMode(EditorMode::preview);
    settings.preferences.setAIModel("openai", "a \"model\"\nwith lines");
    EXPECT_EQ(changed, (std::vector<std::string>{"uiSize", "editorFontSize", "defaultEditorMode",
                                                 "aiModel_openai"}));
    UserDefaults again(settings.folder.path() / "a" / "preferences.ini");
    const Preferences read(again);
    EXPECT_EQ(read.uiSize(), UISize::large);
    EXPECT_EQ(read.editorFontSize(), 13.5);
    EXPECT_EQ(read.defaultEditorMode(), EditorMode::preview);
    EXPECT_EQ(read.aiModel("openai"), "a \"model\"\nwith lines");
    again.remove("uiSize");
    EXPECT_EQ(read.uiSize(), UISize::normal);
}

TEST(Preferences, NonsenseReadsAsTheDefault) {
    const TemporaryFolder folder;
    const auto file = folder.write("p.ini",
                                   "[Preferences]\nuiSize=gigantic\neditorFontSize="
                                   "big\nspellChecking=maybe\nautoSaveInterval=-4\n");
    UserDefaults defaults(file);
    const Preferences preferences(defaults);
    EXPECT_EQ(preferences.uiSize(), UISize::normal);
    EXPECT_EQ(preferences.editorFontSize(), 15.0);
    EXPECT_TRUE(preferences.spellChecking());
    EXPECT_GT(preferences.autoSaveInterval(), 0.0);
    UserDefaults broken(folder.write("q.ini", "\x01 not a key file"));
    EXPECT_EQ(Preferences(broken).appLanguage(), "pl");
}

TEST(Localisation, EnglishExactlyWhenThePreferenceSaysEn) {
    Settings settings;
    const Text text{"Kosz", "Trash"};
    EXPECT_STREQ(settings.texts(text), "Kosz");
    settings.preferences.setAppLanguage("en");
    EXPECT_STREQ(settings.texts(text), "Trash");
    settings.preferences.setAppLanguage("de");
    EXPECT_STREQ(settings.texts(text), "Kosz");
    EXPECT_EQ(settings.texts.format({"\"%1\" i %2%", ""}, {"a%2", "b"}), "\"a%2\" i b%");
    EXPECT_EQ(withShortcutNames("Nowa notatka (⇧⌘N)"), "Nowa notatka (Shift+Ctrl+N)");
}

TEST(Localisation, PolishCountsTakeTheirForms) {
    Settings settings;
    const auto& texts = settings.texts;
    for (const int many : {0, 5, 11, 12, 13, 14, 21, 25, 112, 1012}) {
        EXPECT_EQ(texts.notes(many), std::to_string(many) + " notatek");
        EXPECT_EQ(texts.words(many), std::to_string(many) + " słów");
    }
    for (const int few : {2, 3, 4, 22, 34, 102, 122}) {
        EXPECT_EQ(texts.notes(few), std::to_string(few) + " notatki");
        EXPECT_EQ(texts.words(few), std::to_string(few) + " słowa");
    }
    EXPECT_EQ(texts.notes(1), "1 notatka");
    EXPECT_EQ(texts.words(1), "1 słowo");
    settings.preferences.setAppLanguage("en");
    EXPECT_EQ(texts.notes(1), "1 note");
    EXPECT_EQ(texts.words(2), "2 words");
}

TEST(UISize, ScalesFonts) {
    EXPECT_NEAR(13 * fontScale(UISize::large), 15.6, 1e-9);
    EXPECT_EQ(fontScale(UISize::small), 0.85);
}

}  // namespace
}  // namespace corvel
