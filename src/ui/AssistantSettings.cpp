#include "ui/AssistantSettings.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantSettingsTexts.h"

#include <string>

namespace corvel {

AssistantSettings::AssistantSettings(Session& session, Labels& labels, Gtk::Window& window)
    : m_session(session) {
    addProvider(labels);
    for (const auto type : kAIProviderTypes) {
        m_all.push_back(std::make_unique<ProviderSettings>(session, labels, window, type));
        m_page.add(m_all.back()->group());
    }
}

void AssistantSettings::addProvider(Labels& labels) {
    adw::PreferencesGroup group;
    labels.add(texts::assistantKeyNote,
               [group](const auto& text) mutable { group.setDescription(text); });
    labels.add(texts::assistantProvider, [this](const auto& text) { m_provider.setTitle(text); });
    std::vector<std::string> names;
    names.reserve(kAIProviderTypes.size());
    for (const auto type : kAIProviderTypes)
        names.emplace_back(displayName(type));
    m_provider.setChoices(names);
    showProvider();
    m_provider.onChosen([this] {
        const auto chosen = kAIProviderTypes.at(m_provider.chosen());
        if (rawValue(chosen) == m_session.preferences.aiProvider()) return;
        m_session.preferences.setAIProvider(rawValue(chosen));
    });
    m_changes = m_session.preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "aiProvider") showProvider();
    });
    group.add(m_provider.widget());
    m_page.add(group);
}

void AssistantSettings::showProvider() {
    const auto type =
        providerTypeOf(m_session.preferences.aiProvider()).value_or(AIProviderType::claude);
    m_provider.choose(static_cast<std::size_t>(type));
}

void AssistantSettings::refresh() {
    for (const auto& one : m_all)
        one->refresh();
}

}  // namespace corvel
