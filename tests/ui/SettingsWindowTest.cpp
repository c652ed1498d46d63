#include "ui/SettingsWindow.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>
#include <gtkmm/dropdown.h>
#include <gtkmm/scale.h>
#include <gtkmm/switch.h>
#include <gtkmm/togglebutton.h>

#include <algorithm>

namespace corvel {
namespace {

using testing::Contains;
using testing::ElementsAre;

class SettingsWindowTest : public WindowTest {
protected:
    SettingsWindowTest() : settings(session, parent) {
        settings.present();
        EXPECT_TRUE(turnUntil([this] { return settings.window().get_mapped(); }));
    }

    static void collectTitles(GtkWidget* widget, std::vector<std::string>& titles) {
        if (ADW_IS_ACTION_ROW(widget) != FALSE)
            titles.emplace_back(adw_preferences_row_get_title(ADW_PREFERENCES_ROW(widget)));
        for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
             child = gtk_widget_get_next_sibling(child)) {
            collectTitles(child, titles);
        }
    }
    std::vector<std::string> titles() {
        std::vector<std::string> titles;
        collectTitles(GTK_WIDGET(settings.window().gobj()), titles);
        return titles;
    }

    Gtk::Scale& slider(std::size_t index) { return *all<Gtk::Scale>(settings.window()).at(index); }
    /// Presses the choice with this label.
    bool choose(const std::string& label) {
        for (auto* button : all<Gtk::ToggleButton>(settings.window())) {
            if (button->get_label().raw() == label) return button->activate();
        }
        return false;
    }

    SettingsWindow settings;
};

TEST_F(SettingsWindowTest, WritesWhatIsChosenAndSaysIt) {
    std::vector<std::string> written;
    const ScopedConnection listening = session.preferences.signalChanged().connect(
        [&written](const std::string& key) { written.push_back(key); });
    slider(0).set_value(12.3);
    EXPECT_EQ(session.preferences.autoSaveInterval(), 12.0);
    slider(1).set_value(19);
    slider(2).set_value(1.2000000000000002);
    EXPECT_EQ(defaults.string("editorLineSpacing"), "1.2");
    slider(3).set_value(45);
    EXPECT_EQ(session.preferences.trashRetentionDays(), 45);
    for (auto* control : all<Gtk::Switch>(settings.window()))
        control->set_active(false);
    EXPECT_FALSE(session.preferences.autoCloseBrackets());
    EXPECT_FALSE(session.preferences.spellChecking());
    EXPECT_FALSE(session.preferences.loadRemoteImages());
    EXPECT_THAT(written, ElementsAre("autoSaveInterval", "editorFontSize", "editorLineSpacing",
                                     "trashRetentionDays", "autoCloseBrackets", "spellChecking",
                                     "loadRemoteImages"));
    for (const char* title : {"Autozapis co: 12s", "Rozmiar czcionki: 19", "Interlinia: 1,2",
                              "Opróżniaj kosz po 45 dniach"}) {
        EXPECT_THAT(titles(), Contains(title));
    }
}

TEST_F(SettingsWindowTest, OffersItsPagesInAMenuWhereTheTabsWouldBeCut) {
    auto* menu = all<Gtk::DropDown>(settings.window()).front();
    EXPECT_FALSE(menu->get_mapped()) << "there is room for the tabs";
    settings.window().set_default_size(380, 680);
    ASSERT_TRUE(turnUntil([menu] { return menu->get_mapped(); }));
    settings.showPage(SettingsPage::sync);
    EXPECT_EQ(menu->get_selected(), static_cast<guint>(SettingsPage::sync));
    menu->set_selected(static_cast<guint>(SettingsPage::editor));
    EXPECT_STREQ(adw_preferences_window_get_visible_page_name(
                     ADW_PREFERENCES_WINDOW(settings.window().gobj())),
                 "editor");
    settings.window().set_default_size(1000, 680);
    EXPECT_TRUE(turnUntil([menu] { return !menu->get_mapped(); }));
}

TEST_F(SettingsWindowTest, ChangesItsOwnLanguage) {
    ASSERT_TRUE(choose("English"));
    ASSERT_TRUE(turnUntil([this] { return session.texts.isEnglish(); }));
    EXPECT_EQ(settings.window().get_title(), "Settings");
    for (const char* title : {"Auto-save interval: 5s", "Line spacing: 1.6",
                              "Empty trash after 30 days", "Interface Size", "Sync status: off"}) {
        EXPECT_THAT(titles(), Contains(title));
    }
    ASSERT_TRUE(choose("Large"));
    EXPECT_TRUE(turnUntil([this] { return session.preferences.uiSize() == UISize::large; }));
}

TEST_F(SettingsWindowTest, ShowsWhatIsChangedElsewhereAndLeavesItAlone) {
    session.preferences.setEditorFontSize(15.5);
    session.preferences.setUISize(UISize::large);
    EXPECT_THAT(titles(), Contains("Rozmiar czcionki: 15,5"));
    EXPECT_EQ(session.preferences.editorFontSize(), 15.5);
    const auto buttons = all<Gtk::ToggleButton>(settings.window());
    const auto large =
        std::ranges::find_if(buttons, [](auto* button) { return button->get_label() == "Duży"; });
    ASSERT_NE(large, buttons.end());
    EXPECT_TRUE((*large)->get_active());
    themes.selectTheme(themes.darkTheme());
    EXPECT_THAT(titles(), Contains("Corvel Dark"));
}

}  // namespace
}  // namespace corvel
