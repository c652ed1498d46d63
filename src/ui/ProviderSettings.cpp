#include "ui/ProviderSettings.h"

#include "ai/ApiKey.h"
#include "app/Texts.h"
#include "app/texts/AssistantSettingsTexts.h"
#include "ui/Accessible.h"
#include "ui/Dialogs.h"

#include <string>

namespace corvel {

namespace {

using Work = ProviderKeyViewModel::Work;

const char* iconOf(const ProviderKeyViewModel& key) {
    if (key.isBad()) return "dialog-warning-symbolic";
    return key.keyState() == KeyState::stored ? "emblem-ok-symbolic" : "dialog-password-symbolic";
}

}  // namespace

ProviderSettings::ProviderSettings(Session& session,
                                   Labels& labels,
                                   Gtk::Window& window,
                                   AIProviderType type)
    : m_session(session)
    , m_window(window)
    , m_key(session.ai.factory, session.ai.keychain, type)
    , m_model(session.preferences, type)
    , m_peek(buttonWithIcon(m_entry.widget(), "view-reveal-symbolic"))
    , m_save(*Gtk::make_managed<Gtk::Button>())
    , m_icon(*Gtk::make_managed<Gtk::Image>())
    , m_spinner(*Gtk::make_managed<Gtk::Spinner>())
    , m_test(*Gtk::make_managed<Gtk::Button>())
    , m_delete(*Gtk::make_managed<Gtk::Button>()) {
    m_group.setTitle(displayName(type));
    m_group.add(m_model.row().widget());
    buildEntry();
    buildStatus();
    m_changes = m_key.signalChanged().connect([this] { show(); });
    m_saves = m_key.signalSaved().connect([this] { m_entry.clear(); });
    labels.add([this] { relabel(); });
}

void ProviderSettings::buildEntry() {
    m_entry.addSuffix(m_save);
    m_save.add_css_class("suggested-action");
    const auto save = [this] { m_key.save(m_entry.text()); };
    m_save.signal_clicked().connect(save);
    m_entry.onActivated(save);
    m_entry.onChanged([this] { showButtons(); });
    m_group.add(m_entry.widget());
}

void ProviderSettings::buildStatus() {
    m_status.addPrefix(m_icon);
    m_status.addSuffix(m_spinner);
    m_status.addSuffix(m_test);
    m_status.addSuffix(m_delete);
    m_test.signal_clicked().connect([this] { testOrStop(); });
    m_delete.signal_clicked().connect([this] { askToDelete(); });
    m_group.add(m_status.widget());
}

void ProviderSettings::relabel() {
    const auto& say = m_session.texts;
    const std::string name = displayName(m_key.type());
    m_model.row().setTitle(say(texts::assistantModel));
    setAccessibleLabel(m_model.row().widget(), say.format(texts::assistantModelOf, {name}));
    setAccessibleLabel(m_entry.widget(), say.format(texts::assistantKeyOf, {name}));
    if (m_peek != nullptr) {
        labelControl(*m_peek, say.format(texts::assistantShowKeyOf, {name}));
    }
    m_save.set_label(say(texts::assistantSaveKey));
    setAccessibleLabel(m_save, say.format(texts::assistantSaveKeyOf, {name}));
    m_delete.set_label(say(texts::assistantDeleteKey));
    setAccessibleLabel(m_delete, say.format(texts::assistantDeleteKeyOf, {name}));
    show();
}

void ProviderSettings::show() {
    const auto& say = m_session.texts;
    const bool isStored = m_key.keyState() == KeyState::stored;
    m_entry.setTitle(say(isStored ? texts::assistantNewKey : texts::assistantKey));
    m_status.setTitle(m_key.status(say));
    m_status.setSubtitle(m_key.detail(say));
    m_icon.set_from_icon_name(iconOf(m_key));
    showButtons();
}

void ProviderSettings::showButtons() {
    const auto& say = m_session.texts;
    const bool isTesting = m_key.work() == Work::testing;
    const bool isIdle = m_key.work() == Work::none;
    const bool isStored = m_key.keyState() == KeyState::stored;
    const bool isEntered = !trimmedApiKey(m_entry.text()).empty();
    m_save.set_visible(isEntered);
    m_save.set_sensitive(isIdle);
    m_test.set_visible(isTesting || isStored || isEntered);
    m_test.set_sensitive(isIdle || isTesting);
    m_test.set_label(say(isTesting ? texts::assistantCancelTest : texts::assistantTest));
    setAccessibleLabel(m_test,
                       say.format(isTesting ? texts::assistantCancelTestOf : texts::assistantTestOf,
                                  {displayName(m_key.type())}));
    m_delete.set_visible(isStored);
    m_delete.set_sensitive(isIdle);
    m_spinner.set_visible(!isIdle);
    m_spinner.set_spinning(!isIdle);
}

void ProviderSettings::testOrStop() {
    if (m_key.work() == Work::testing) return m_key.cancelTest();
    m_key.test(m_entry.text());
}

void ProviderSettings::askToDelete() {
    const auto& say = m_session.texts;
    const Question question{
        say(texts::assistantDeleteQuestion),
        say.format(texts::assistantDeleteBody, {displayName(m_key.type())}),
        {{"cancel", say(texts::cancel)},
         {"delete", say(texts::assistantDeleteKey), DialogAnswer::Look::destructive}}};
    ask(m_window, question, [this](const std::string& answer) {
        if (answer == "delete") m_key.remove();
    });
}

}  // namespace corvel
