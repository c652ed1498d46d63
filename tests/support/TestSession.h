#pragma once

#include "app/Session.h"
#include "model/PersistenceController.h"
#include "support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// A session on disk with a text buffer such as a window has; can be closed and opened again.
class TestSession {
public:
    explicit TestSession(double autoSaveInterval) : m_interval(autoSaveInterval) { open(); }

    void open() {
        controller = std::make_unique<PersistenceController>(PersistenceController::Storage::onDisk,
                                                             folder.path());
        defaults = std::make_unique<UserDefaults>(folder.path() / "preferences.ini");
        themes = std::make_unique<ThemeManager>(*defaults, folder.path() / "Themes",
                                                [] { return false; });
        session = std::make_unique<Session>(*controller, *defaults, *themes,
                                            [this](CommandID id) { opened.push_back(id); });
        session->preferences.setAutoSaveInterval(m_interval);
        session->editor.setTextSource([this] { return buffer; });
        session->editor.signalOpened().connect([this] {
            buffer = session->editor.note() ? session->editor.note()->content : std::string();
        });
        session->start();
    }

    /// As a crash would: what is not saved is not saved now.
    void close() {
        session.reset();
        themes.reset();
        defaults.reset();
        controller.reset();
    }

    void type(const std::string& text) {
        buffer += text;
        session->editor.contentEdited();
    }

    Session* operator->() { return session.get(); }
    void activate(CommandID id) { session->commands.activate(id); }
    std::string storedText(const Uuid& id) { return session->library.notes.fetchNote(id)->content; }
    Uuid selected() { return session->state.selectedNoteID.get().value(); }

    TemporaryFolder folder;
    std::unique_ptr<PersistenceController> controller;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<ThemeManager> themes;
    std::unique_ptr<Session> session;
    std::string buffer;
    std::vector<CommandID> opened;

private:
    double m_interval;
};

}  // namespace corvel
