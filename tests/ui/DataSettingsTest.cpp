#include "app/texts/DataTexts.h"
#include "ui/DataSettings.h"
#include "ui/SettingsWindow.h"
#include "ui/WindowTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

namespace corvel {
namespace {

class DataSettingsTest : public WindowTest {
protected:
    BackupInfo addBackup(BackupKind kind) {
        const BackupFolder backups(controller.folder());
        const auto begun = backups.beginNew();
        std::ofstream(begun / "qnoCorvel.sqlite") << "not read here";
        BackupInfo info;
        info.kind = kind;
        info.day = "2026-05-17";
        info.madeAt = Date::now().plusSeconds(-3600 * 24 * 40);
        info.notes = 22;
        info.bytes = 3'240'000;
        return backups.complete(begun, info);
    }

    static void collect(GtkWidget* widget, std::vector<std::string>& texts) {
        if (ADW_IS_ACTION_ROW(widget) != FALSE && gtk_widget_get_visible(widget) != FALSE) {
            texts.emplace_back(adw_preferences_row_get_title(ADW_PREFERENCES_ROW(widget)));
            const auto* subtitle = adw_action_row_get_subtitle(ADW_ACTION_ROW(widget));
            texts.emplace_back(subtitle != nullptr ? subtitle : "");
        }
        for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
             child = gtk_widget_get_next_sibling(child)) {
            collect(child, texts);
        }
    }
    std::vector<std::string> rowTexts(SettingsWindow& settings) {
        std::vector<std::string> texts;
        collect(GTK_WIDGET(settings.window().gobj()), texts);
        return texts;
    }
    std::vector<Gtk::Button*> buttons(Gtk::Widget& root, const std::string& label) {
        auto found = all<Gtk::Button>(root);
        std::erase_if(found, [&](auto* button) { return button->get_label().raw() != label; });
        return found;
    }
};

using testing::Contains;
using testing::Not;

TEST_F(DataSettingsTest, ListsBackupsInBothLanguages) {
    SettingsWindow settings(session, parent);
    EXPECT_THAT(rowTexts(settings), Contains(texts::backupNone.polish));
    addBackup(BackupKind::daily);
    addBackup(BackupKind::beforeRestore);
    session.backups.signalChanged().emit();
    EXPECT_THAT(rowTexts(settings), Contains("22 notatki · 3,2 MB"));
    EXPECT_THAT(rowTexts(settings), Contains("22 notatki · 3,2 MB · sprzed przywrócenia"));
    EXPECT_THAT(rowTexts(settings), Not(Contains(texts::backupNone.polish)));
    EXPECT_EQ(buttons(settings.window(), "Przywróć…").size(), 2U);
    session.preferences.setAppLanguage("en");
    EXPECT_THAT(rowTexts(settings), Contains("22 notes · 3.2 MB · before a restoration"));
    EXPECT_EQ(buttons(settings.window(), "Restore…").size(), 2U);
}

TEST_F(DataSettingsTest, ABackupThatIsNoLibraryIsRefusedInWords) {
    const auto backup = addBackup(BackupKind::daily);
    SettingsWindow settings(session, parent);
    session.backups.restore(backup);
    EXPECT_THAT(rowTexts(settings), Contains(texts::restoreRunning.polish));
    ASSERT_TRUE(turnUntil([this] { return !session.backups.isWorking(); }));
    EXPECT_THAT(rowTexts(settings), Contains(texts::restoreFailed.polish));
    EXPECT_THAT(rowTexts(settings), Contains(texts::restoreFaultDamaged.polish));
}

TEST_F(DataSettingsTest, RestoringIsAskedAboutFirst) {
    addBackup(BackupKind::daily);
    SettingsWindow settings(session, parent);
    settings.present();
    settings.showPage(SettingsPage::data);
    auto* restore = buttons(settings.window(), "Przywróć…").at(0);
    ASSERT_TRUE(turnUntil([&] { return restore->get_mapped(); }));
    restore->activate();
    Gtk::Window* dialog = nullptr;
    ASSERT_TRUE(turnUntil([&] {
        for (auto* window : Gtk::Window::list_toplevels()) {
            if (ADW_IS_MESSAGE_DIALOG(window->gobj()) != FALSE) dialog = window;
        }
        return dialog != nullptr;
    }));
    EXPECT_FALSE(session.backups.isWorking());
    dialog->close();
    EXPECT_FALSE(session.backups.isWorking());
}

}  // namespace
}  // namespace corvel
