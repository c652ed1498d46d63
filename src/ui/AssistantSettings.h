#pragma once

#include "app/Session.h"
#include "ui/Labels.h"
#include "ui/ProviderSettings.h"
#include "ui/Rows.h"

#include <gtkmm/window.h>

#include <memory>
#include <vector>

namespace corvel {

/// The assistant's page of the settings: which provider it talks to, and each provider's model and
/// key.
class AssistantSettings {
public:
    /// All must outlive the page.
    AssistantSettings(Session& session, Labels& labels, Gtk::Window& window);
    AssistantSettings(const AssistantSettings&) = delete;
    AssistantSettings& operator=(const AssistantSettings&) = delete;
    ~AssistantSettings() = default;

    adw::PreferencesPage& page() { return m_page; }
    /// Looks for the keys anew: another program may have changed them.
    void refresh();

private:
    void addProvider(Labels& labels);
    void showProvider();

    Session& m_session;
    adw::PreferencesPage m_page;
    adw::ComboRow m_provider;
    std::vector<std::unique_ptr<ProviderSettings>> m_all;
    ScopedConnection m_changes;
};

}  // namespace corvel
