#include "themes/ThemeFile.h"
#include "ui/StyleSheet.h"
#include "ui/ThemePicker.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>
#include <gtkmm/colorbutton.h>
#include <gtkmm/spinbutton.h>
#include <gtkmm/stylecontext.h>

namespace corvel {
namespace {

using testing::ElementsAre;

class ThemesTest : public WindowTest {
protected:
    ~ThemesTest() override {
        adw_style_manager_set_color_scheme(adw_style_manager_get_default(),
                                           ADW_COLOR_SCHEME_DEFAULT);
    }

    static std::vector<std::string> names(const ThemePicker& picker) {
        std::vector<std::string> names;
        for (auto* card : picker.cards())
            names.push_back(card->theme().name);
        return names;
    }
    static bool becomes(const std::function<bool()>& condition) { return turnUntil(condition); }

    /// The picker with one theme of the user, which is current.
    void choose(const std::string& name) {
        Theme theme = ThemeDraft::copying(themes.darkTheme(), name, themes).theme;
        ASSERT_TRUE(themes.saveTheme(theme));
        themes.selectTheme(theme);
    }

    std::string colorNamed(const char* name) {
        Gdk::RGBA color;
        return parent.get_style_context()->lookup_color(name, color) ? color.to_string() : "";
    }
};

TEST_F(ThemesTest, AChosenThemeRestylesEveryWindow) {
    const StyleSheet style(session.preferences, themes);
    EXPECT_EQ(colorNamed("corvel_editor"), "rgb(255,255,255)");
    EXPECT_FALSE(adw_style_manager_get_dark(adw_style_manager_get_default()));
    themes.selectTheme(themes.darkTheme());
    EXPECT_EQ(colorNamed("corvel_editor"), "rgb(30,30,30)");
    EXPECT_TRUE(adw_style_manager_get_dark(adw_style_manager_get_default()));
}

TEST_F(ThemesTest, ValuesOfAThemeStayInTheirPlaceInTheStyleSheet) {
    Theme theme = themes.lightTheme();
    theme.typography.monoFontFamily =
        "x\"; } @define-color corvel_editor #010203; * { color: red; } \\\n/*";
    theme.colors.editorText = "red; } @define-color corvel_editor #010203; * {";
    theme.colors.selection = "\"/*";
    const auto provider = Gtk::CssProvider::create();
    std::string faults;
    provider->signal_parsing_error().connect(
        [&faults](const auto&, const Glib::Error& error) { faults += error.what(); });
    provider->load_from_data(StyleSheet::css(theme, 1.0, 15.0));
    EXPECT_EQ(faults, "");
    Gtk::Window window;
    window.get_style_context()->add_provider(provider, GTK_STYLE_PROVIDER_PRIORITY_USER);
    Gdk::RGBA color;
    ASSERT_TRUE(window.get_style_context()->lookup_color("corvel_editor", color));
    EXPECT_EQ(color.to_string(), "rgb(255,255,255)");
}

TEST_F(ThemesTest, ThePickerChoosesAndFollowsWhatIsChosenElsewhere) {
    ThemePicker picker(session, parent);
    EXPECT_THAT(names(picker), ElementsAre("Corvel Light", "Corvel Dark", "Corvel Sepia"));
    picker.present();
    ASSERT_TRUE(becomes([&] { return picker.window().get_mapped(); }));
    picker.cards()[2]->button().activate();
    EXPECT_TRUE(becomes([&] { return themes.currentTheme().name == "Corvel Sepia"; }));
    EXPECT_FALSE(picker.cards()[0]->button().get_active());
    themes.selectTheme(themes.darkTheme());
    EXPECT_TRUE(picker.cards()[1]->button().get_active());
    choose("Night");
    EXPECT_TRUE(becomes([&] { return picker.cards().size() == 4; }));
    EXPECT_TRUE(picker.cards()[3]->button().get_active());
}

TEST_F(ThemesTest, ADeletedThemeLeavesThePickerAndBuiltInOnesCannotBeDeleted) {
    choose("Night");
    ThemePicker picker(session, parent);
    EXPECT_FALSE(picker.cards()[0]->activate_action("theme.remove", {}));
    EXPECT_TRUE(picker.cards()[3]->activate_action("theme.remove", {}));
    EXPECT_TRUE(becomes([&] { return picker.cards().size() == 3; }));
    EXPECT_EQ(themes.currentTheme(), themes.lightTheme());
    EXPECT_TRUE(picker.cards()[0]->button().get_active());
}

TEST_F(ThemesTest, TheEditorWritesOnlyWhatWasTouched) {
    choose("Night");
    ThemePicker picker(session, parent);
    picker.cards()[3]->activate_action("theme.edit", {});
    ThemeEditor* editor = picker.editor();
    ASSERT_NE(editor, nullptr);
    const auto wells = all<Gtk::ColorButton>(editor->window());
    ASSERT_EQ(wells.size(), 15U);
    Gdk::RGBA picked;
    picked.set("#12AB34");
    wells[8]->set_rgba(picked);
    g_signal_emit_by_name(wells[8]->gobj(), "color-set");
    const auto numbers = all<Gtk::SpinButton>(editor->window());
    ASSERT_EQ(numbers.size(), 2U);
    numbers[1]->spin(Gtk::SpinType::STEP_FORWARD, 0.1);
    EXPECT_EQ(themes.currentTheme().colors.link, themes.darkTheme().colors.link);

    editor->apply();
    Theme expected = themes.darkTheme();
    expected.colors.link = "#12AB34";
    expected.typography.lineHeight = 1.7;
    EXPECT_EQ(themes.currentTheme().colors, expected.colors) << "the selection keeps its alpha";
    EXPECT_EQ(themes.currentTheme().typography, expected.typography);
    EXPECT_EQ(themes.availableThemes().at(3), themes.currentTheme());
    EXPECT_FALSE(editor->window().get_visible());
}

TEST_F(ThemesTest, TheEditorAsksBeforeItReplacesAnotherTheme) {
    choose("Night");
    const Theme night = themes.currentTheme();
    ThemePicker picker(session, parent);
    picker.cards()[0]->activate_action("theme.duplicate", {});
    ASSERT_NE(picker.editor(), nullptr);
    gtk_editable_set_text(GTK_EDITABLE(picker.editor()->controls().nameField().gobj()), "night");
    picker.editor()->save();
    EXPECT_EQ(themes.availableThemes().at(3), night);
    EXPECT_TRUE(picker.editor()->window().get_visible());
    gtk_editable_set_text(GTK_EDITABLE(picker.editor()->controls().nameField().gobj()), "Day");
    picker.editor()->save();
    EXPECT_EQ(themes.availableThemes().size(), 5U);
    EXPECT_EQ(themes.currentTheme(), night);
}

TEST_F(ThemesTest, FilesAreImportedOneAfterTheOther) {
    Theme theme = ThemeDraft::copying(themes.lightTheme(), "First", themes).theme;
    const auto first = folder.write("a.json", ThemeFile::encode(theme));
    theme.name = "Second";
    const auto second = folder.write("b.qnotheme", ThemeFile::encode(theme));
    ThemePicker picker(session, parent);
    picker.importFiles({first, folder.write("c.json", "{"), second});
    EXPECT_TRUE(becomes([&] { return picker.cards().size() == 5; }));
}

TEST_F(ThemesTest, WindowsSpeakTheOtherLanguageAtOnce) {
    ThemePicker picker(session, parent);
    picker.cards()[0]->activate_action("theme.duplicate", {});
    EXPECT_EQ(picker.editor()->window().get_title(), "Nowy motyw");
    session.preferences.setAppLanguage("en");
    EXPECT_EQ(picker.window().get_title(), "Themes");
    EXPECT_EQ(picker.editor()->window().get_title(), "New Theme");
    EXPECT_EQ(picker.editor()->draft().theme.name, "Corvel Light (kopia)");
}

}  // namespace
}  // namespace corvel
