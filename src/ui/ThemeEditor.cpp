#include "ui/ThemeEditor.h"

#include "app/Texts.h"
#include "app/texts/ThemeTexts.h"
#include "themes/ThemeFile.h"
#include "ui/Adw.h"
#include "ui/Dialogs.h"
#include "ui/TextScale.h"

#include <gtkmm/separator.h>

namespace corvel {

namespace {

constexpr int kWidth = 980;
constexpr int kHeight = 720;
constexpr int kControlsWidth = 400;

}  // namespace

ThemeEditor::ThemeEditor(Session& session, const ThemeDraft& draft, Gtk::Window& parent)
    : m_session(session)
    , m_draft(draft)
    , m_window(adw_window_new(), parent)
    , m_labels(session.texts, session.preferences)
    , m_controls(m_draft.theme, m_labels, session.texts)
    , m_preview(*Gtk::make_managed<ThemePreview>(session.texts)) {
    build();
    label();
    m_controls.signalChanged().connect([this] { changed(); });
    m_cancel.signal_clicked().connect([this] { window().close(); });
    m_save.signal_clicked().connect([this] { save(); });
    m_apply.signal_clicked().connect([this] { apply(); });
    window().signal_close_request().connect([this] { return closeRequested(); }, false);
    changed();
}

void ThemeEditor::build() {
    adw::HeaderBar bar;
    bar.setWindowControls(false, false);
    m_apply.add_css_class("suggested-action");
    bar.packStart(m_cancel);
    bar.packEnd(m_apply);
    bar.packEnd(m_save);

    m_controls.widget().set_size_request(widthForText(kControlsWidth), -1);
    m_controls.widget().set_hexpand(false);
    auto& halves = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL);
    halves.append(m_controls.widget());
    halves.append(*Gtk::make_managed<Gtk::Separator>(Gtk::Orientation::VERTICAL));
    halves.append(m_preview);
    halves.set_vexpand(true);
    m_toasts.setChild(halves);

    auto& content = *Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    content.append(bar.widget());
    content.append(m_toasts.widget());
    adw_window_set_content(ADW_WINDOW(window().gobj()), GTK_WIDGET(content.gobj()));
    window().set_default_size(widthForText(kWidth), kHeight);
    window().set_modal(true);
    m_window.closeOnEscape();
    m_controls.nameField().grab_focus();
}

void ThemeEditor::label() {
    m_labels.add(m_draft.isNew() ? texts::newTheme : texts::editTheme,
                 [this](const auto& text) { window().set_title(text); });
    m_labels.add(texts::cancel, [this](const auto& text) { m_cancel.set_label(text); });
    m_labels.add(texts::saveTheme, [this](const auto& text) { m_save.set_label(text); });
    m_labels.add(texts::apply, [this](const auto& text) { m_apply.set_label(text); });
    m_labels.add([this] { m_preview.relabel(); });
}

void ThemeEditor::changed() {
    m_save.set_sensitive(m_draft.hasName());
    m_apply.set_sensitive(m_draft.hasName());
    m_preview.show(m_draft.theme);
}

void ThemeEditor::save() {
    saveAnd([](const Theme&) {});
}

void ThemeEditor::apply() {
    saveAnd([this](const Theme& theme) { m_session.themes.selectTheme(theme); });
}

void ThemeEditor::saveAnd(const std::function<void(const Theme&)>& then) {
    const Theme theme = m_draft.result(m_session.themes);
    if (!m_draft.replacesAnother(m_session.themes)) return write(theme, then);
    askToReplace(window(), m_session.texts, themeFileName(theme),
                 [this, theme, then](bool replaces) {
                     if (replaces) write(theme, then);
                 });
}

void ThemeEditor::write(const Theme& theme, const std::function<void(const Theme&)>& then) {
    if (!m_session.themes.saveTheme(theme)) {
        m_toasts.show(m_session.texts(texts::themeNotSaved));
        return;
    }
    then(theme);
    m_saved.emit(theme);
    close();
}

bool ThemeEditor::closeRequested() {
    if (m_isDone || !m_draft.isEdited()) return false;
    const auto& texts = m_session.texts;
    ask(window(),
        {texts(texts::discardThemeQuestion),
         texts(texts::discardThemeDetail),
         {{"cancel", texts(texts::cancel)},
          {"discard", texts(texts::discard), DialogAnswer::Look::destructive}}},
        [this](const std::string& answer) {
            if (answer == "discard") close();
        });
    return true;
}

void ThemeEditor::close() {
    m_isDone = true;
    window().close();
}

void askToReplace(Gtk::Window& parent,
                  const Localisation& texts,
                  const std::string& fileName,
                  const std::function<void(bool replaces)>& answered) {
    ask(parent,
        {texts(texts::replaceThemeQuestion),
         texts.format(texts::replaceThemeDetail, {fileName}),
         {{"cancel", texts(texts::cancel)},
          {"replace", texts(texts::replace), DialogAnswer::Look::destructive}}},
        [answered](const std::string& answer) { answered(answer == "replace"); });
}

}  // namespace corvel
