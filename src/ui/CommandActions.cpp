#include "ui/CommandActions.h"

#include <glibmm/regex.h>

#include <array>

namespace corvel {

namespace {

UISize sizeFrom(const std::string& name) {
    for (const auto size : {UISize::small, UISize::large}) {
        if (name == rawValue(size)) return size;
    }
    return UISize::normal;
}

void setState(const Glib::RefPtr<Gio::SimpleAction>& action, const std::string& value) {
    action->set_state(Glib::Variant<Glib::ustring>::create(value));
}

}  // namespace

CommandActions::CommandActions(Session& session,
                               Gtk::Application& application,
                               Gio::ActionMap& window)
    : m_session(session) {
    for (const auto& command : AppCommands::table()) {
        addCommand(command, application, window);
    }
    addChoices(window);
    followState();
    updateEnabled();
}

void CommandActions::addCommand(const Command& command,
                                Gtk::Application& application,
                                Gio::ActionMap& window) {
    auto action = Gio::SimpleAction::create(command.actionName);
    action->signal_activate().connect(
        [this, id = command.id](const Glib::VariantBase&) { m_session.commands.activate(id); });
    window.add_action(action);
    if (*command.accelerator != '\0') {
        application.set_accels_for_action(std::string("win.") + command.actionName,
                                          Glib::Regex::split_simple(" ", command.accelerator));
    }
    m_bound.push_back({command.id, std::move(action)});
}

template <typename Changed>
Glib::RefPtr<Gio::SimpleAction> CommandActions::addChoice(Gio::ActionMap& window,
                                                          const char* name,
                                                          const std::string& value,
                                                          Changed changed) {
    auto action = Gio::SimpleAction::create_radio_string(name, value);
    action->signal_activate().connect([changed](const Glib::VariantBase& parameter) {
        changed(Glib::VariantBase::cast_dynamic<Glib::Variant<Glib::ustring>>(parameter).get());
    });
    window.add_action(action);
    return action;
}

void CommandActions::addChoices(Gio::ActionMap& window) {
    auto& preferences = m_session.preferences;
    m_language = addChoice(window, "language", m_session.texts.languageCode(),
                           [&preferences](const Glib::ustring& code) {
                               preferences.setAppLanguage(code == "en" ? "en" : "pl");
                           });
    m_size = addChoice(
        window, "uiSize", rawValue(preferences.uiSize()),
        [&preferences](const Glib::ustring& name) { preferences.setUISize(sizeFrom(name)); });
    auto& sort = m_session.state.sortOption;
    m_sort = addChoice(window, "sort", rawValue(sort.get()), [&sort](const Glib::ustring& name) {
        sort.set(sortOptionFrom(name.raw()));
    });
}

void CommandActions::followState() {
    auto& state = m_session.state;
    const auto update = [this] { updateEnabled(); };
    m_connections.emplace_back(state.selectedNoteID.signalChanged().connect(update));
    m_connections.emplace_back(state.selectedNote.signalChanged().connect(update));
    m_connections.emplace_back(state.selectedCount.signalChanged().connect(update));
    m_connections.emplace_back(state.editorMode.signalChanged().connect(update));
    m_connections.emplace_back(state.sidebarFilter.signalChanged().connect(update));
    m_connections.emplace_back(state.sortOption.signalChanged().connect(
        [this] { setState(m_sort, rawValue(m_session.state.sortOption.get())); }));
    m_connections.emplace_back(m_session.preferences.signalChanged().connect(
        [this](const std::string& key) { preferenceChanged(key); }));
}

void CommandActions::updateEnabled() {
    for (const auto& bound : m_bound) {
        bound.action->set_enabled(m_session.commands.isEnabled(bound.id));
    }
}

void CommandActions::preferenceChanged(const std::string& key) {
    if (key == "appLanguage") setState(m_language, m_session.texts.languageCode());
    if (key == "uiSize") setState(m_size, rawValue(m_session.preferences.uiSize()));
}

}  // namespace corvel
