#include "ui/SettingsWindow.h"

#include "app/Texts.h"
#include "app/texts/AssistantSettingsTexts.h"
#include "app/texts/DesktopTexts.h"
#include "app/texts/SettingsTexts.h"
#include "ui/Accessible.h"
#include "ui/TextScale.h"
#include "ui/ThemeSample.h"

#include <gtkmm/button.h>
#include <gtkmm/image.h>

#include <array>

namespace corvel {

namespace {

constexpr int kWidth = 860;
constexpr int kHeight = 680;

const char* nameOf(SettingsPage page) {
    constexpr std::array kNames{"general", "editor", "appearance", "assistant", "sync", "data"};
    return kNames.at(static_cast<std::size_t>(page));
}

}  // namespace

SettingsWindow::SettingsWindow(Session& session, Gtk::Window& parent)
    : m_session(session)
    , m_window(adw_preferences_window_new(), parent)
    , m_labels(session.texts, session.preferences)
    , m_rows(m_labels, session.texts, session.preferences)
    , m_assistant(session, m_labels, window()) {
    window().set_default_size(widthForText(kWidth), kHeight);
    window().set_modal(false);  // the theme picker opens from here, and changes show at once
    m_labels.add(texts::settings, [this](const auto& text) { window().set_title(text); });
    if (auto* search = buttonWithIcon(window(), "edit-find-symbolic")) {
        m_labels.add(texts::search, [search](const auto& text) { labelControl(*search, text); });
    }
    addGeneral();
    addEditor();
    addAppearance();
    addAssistant();
    addSync();
    addData();
    m_pageMenu.emplace(window(), m_labels);
}

void SettingsWindow::present() {
    m_assistant.refresh();
    m_window.present();
}

void SettingsWindow::showPage(SettingsPage page) {
    adw_preferences_window_set_visible_page_name(ADW_PREFERENCES_WINDOW(window().gobj()),
                                                 nameOf(page));
}

void SettingsWindow::addPage(SettingsPage which,
                             adw::PreferencesPage& page,
                             const Text& title,
                             const char* icon) {
    page.setName(nameOf(which));
    m_labels.add(title, [page](const auto& text) mutable { page.setTitle(text); });
    page.setIcon(icon);
    widenColumnForText(GTK_WIDGET(page.get()));
    adw_preferences_window_add(ADW_PREFERENCES_WINDOW(window().gobj()), page.get());
}

adw::PreferencesGroup SettingsWindow::addGroup(adw::PreferencesPage& page, const Text& title) {
    adw::PreferencesGroup group;
    m_labels.add(title, [group](const auto& text) mutable { group.setTitle(text); });
    page.add(group);
    return group;
}

void SettingsWindow::addGeneral() {
    auto& preferences = m_session.preferences;
    adw::PreferencesPage page;
    addPage(SettingsPage::general, page, texts::pageGeneral, "preferences-system-symbolic");
    auto interface = addGroup(page, texts::groupInterface);
    m_rows.add(interface, SettingsRows::Choice{
                              texts::language,
                              {{"pl", texts::polish}, {"en", texts::english}},
                              [this] { return std::string(m_session.texts.languageCode()); },
                              [&](const std::string& code) { preferences.setAppLanguage(code); }});
    m_rows.add(interface,
               SettingsRows::Choice{
                   texts::interfaceSize,
                   {{rawValue(UISize::small), texts::sizeSmall},
                    {rawValue(UISize::normal), texts::sizeNormal},
                    {rawValue(UISize::large), texts::sizeLarge}},
                   [&] { return rawValue(preferences.uiSize()); },
                   [&](const std::string& name) {
                       for (const auto size : {UISize::small, UISize::normal, UISize::large}) {
                           if (rawValue(size) == name) preferences.setUISize(size);
                       }
                   }});
    addExternalFiles(page);
    auto saving = addGroup(page, texts::groupSaving);
    m_rows.add(saving, SettingsRows::Slider{
                           texts::autoSave, &texts::autoSaveDetail, 1, 60, 1,
                           [&] { return preferences.autoSaveInterval(); },
                           [&](double seconds) { preferences.setAutoSaveInterval(seconds); }});
}

void SettingsWindow::addExternalFiles(adw::PreferencesPage& page) {
    auto& preferences = m_session.preferences;
    auto files = addGroup(page, texts::groupExternalFiles);
    m_rows.add(files,
               SettingsRows::Choice{texts::externalFiles,
                                    {{rawValue(ExternalFileUse::ask), texts::externalAsk},
                                     {rawValue(ExternalFileUse::import), texts::useImport},
                                     {rawValue(ExternalFileUse::link), texts::useLink},
                                     {rawValue(ExternalFileUse::preview), texts::externalPreview}},
                                    [&] { return rawValue(preferences.openExternalFiles()); },
                                    [&](const std::string& name) {
                                        preferences.setOpenExternalFiles(externalFileUseFrom(name));
                                    }});
}

void SettingsWindow::addEditor() {
    auto& preferences = m_session.preferences;
    adw::PreferencesPage page;
    addPage(SettingsPage::editor, page, texts::pageEditor, "document-edit-symbolic");
    addEditorText(page);
    auto preview = addGroup(page, texts::groupPreview);
    m_rows.add(preview, SettingsRows::Choice{
                            texts::defaultEditorMode,
                            {{rawValue(EditorMode::editor), texts::modeEditor},
                             {rawValue(EditorMode::split), texts::modeSplit},
                             {rawValue(EditorMode::preview), texts::modePreview}},
                            [&] { return rawValue(preferences.defaultEditorMode()); },
                            [&](const std::string& name) {
                                for (const auto mode :
                                     {EditorMode::editor, EditorMode::split, EditorMode::preview}) {
                                    if (rawValue(mode) == name)
                                        preferences.setDefaultEditorMode(mode);
                                }
                            }});
    m_rows.add(preview,
               SettingsRows::Switch{texts::remoteImages, &texts::remoteImagesDetail,
                                    [&] { return preferences.loadRemoteImages(); },
                                    [&](bool on) { preferences.setLoadRemoteImages(on); }});
}

void SettingsWindow::addEditorText(adw::PreferencesPage& page) {
    auto& preferences = m_session.preferences;
    auto text = addGroup(page, texts::groupText);
    m_rows.add(text,
               SettingsRows::Slider{texts::editorFontSize, nullptr, 9, 32, 1,
                                    [&] { return preferences.editorFontSize(); },
                                    [&](double points) { preferences.setEditorFontSize(points); }});
    m_rows.add(text, SettingsRows::Slider{
                         texts::editorLineSpacing, nullptr, 1, 2.5, 0.1,
                         [&] { return preferences.editorLineSpacing(); },
                         [&](double factor) { preferences.setEditorLineSpacing(factor); }});
    auto writing = addGroup(page, texts::groupWriting);
    m_rows.add(writing,
               SettingsRows::Switch{texts::autoCloseBrackets, nullptr,
                                    [&] { return preferences.autoCloseBrackets(); },
                                    [&](bool on) { preferences.setAutoCloseBrackets(on); }});
    m_rows.add(writing, SettingsRows::Switch{texts::spellChecking, nullptr,
                                             [&] { return preferences.spellChecking(); },
                                             [&](bool on) { preferences.setSpellChecking(on); }});
}

void SettingsWindow::addAppearance() {
    adw::PreferencesPage page;
    addPage(SettingsPage::appearance, page, texts::pageAppearance,
            "applications-graphics-symbolic");
    auto group = addGroup(page, texts::currentTheme);
    adw::ActionRow row;
    auto* sample = Gtk::make_managed<ThemeSample>(m_session.themes.currentTheme(), m_session.texts);
    sample->add_css_class("theme-sample");
    sample->set_overflow(Gtk::Overflow::HIDDEN);
    sample->set_margin_top(12);
    sample->set_margin_bottom(12);
    row.addPrefix(*sample);
    row.setTitleLines(2);
    auto* choose = Gtk::make_managed<Gtk::Button>();
    choose->signal_clicked().connect([this] { m_session.commands.activate(CommandID::themes); });
    m_labels.add(texts::chooseTheme, [choose](const auto& text) { choose->set_label(text); });
    group.setHeaderSuffix(*choose);
    row.setActivatable(*choose);
    group.add(row.widget());
    const auto show = [this, row, sample]() mutable {
        row.setTitle(m_session.themes.currentTheme().name);
        sample->show(m_session.themes.currentTheme());
    };
    m_labels.add(show);
    m_connections.emplace_back(m_session.themes.signalCurrentChanged().connect(show));
}

void SettingsWindow::addAssistant() {
    addPage(SettingsPage::assistant, m_assistant.page(), texts::pageAssistant,
            "corvel-sparkle-symbolic");
}

void SettingsWindow::addSync() {
    const SyncState state = m_session.syncEngine.state();
    adw::PreferencesPage page;
    addPage(SettingsPage::sync, page, texts::pageSync, "weather-overcast-symbolic");
    auto group = addGroup(page, texts::iCloudSync);
    adw::ActionRow row;
    auto& icon = *Gtk::make_managed<Gtk::Image>();
    icon.set_from_icon_name(state == SyncState::syncing ? "emblem-ok-symbolic"
                                                        : "dialog-warning-symbolic");
    row.addPrefix(icon);
    m_labels.add([this, row, state]() mutable {
        const auto& say = m_session.texts;
        row.setTitle(say.format(texts::syncStatus, {say(nameOf(state))}));
        row.setSubtitle(say(explanationOf(state)));
    });
    group.add(row.widget());
}

void SettingsWindow::addData() {
    m_data.emplace(m_session, m_labels, m_rows, window());
    addPage(SettingsPage::data, m_data->page(), texts::pageData, "drive-harddisk-symbolic");
}

}  // namespace corvel
