#pragma once

#include "app/Session.h"
#include "ui/FilePaths.h"
#include "ui/Toasts.h"

#include <gtkmm/filechoosernative.h>
#include <gtkmm/window.h>

#include <functional>
#include <optional>
#include <vector>

namespace corvel {

/// Everything about notes that mirror files which asks the user something: opening files, saving a
/// note as one, finding one that vanished, choosing between two versions.
class LinkedFileFlow {
public:
    using Import = std::function<void(const FilePaths&)>;

    /// `import` is offered for files that can only be imported. All must outlive the flow.
    LinkedFileFlow(Session& session, Gtk::Window& window, Toasts& toasts, Import import);

    void chooseFiles();
    /// Every file becomes a note, or its note is shown.
    void open(const FilePaths& paths);
    void saveAs();
    void stopTracking();
    void showInFolder();
    void compare();
    void locate();
    void saveAgain();

    std::function<void()> onShown;  ///< after the note of a file that was opened is shown

private:
    using Chosen = std::function<void(const FilePaths&)>;
    using Versions = LinkedFileSession::Versions;

    void choose(const Text& title,
                const Text& verb,
                Gtk::FileChooser::Action action,
                Chosen chosen);
    void addFilters() const;
    void show(const Uuid& id);
    void report(const std::vector<LinkError>& refusals);
    void reportUnsaved(const LinkOutcome& outcome);
    void upgrade(const Uuid& id, const std::filesystem::path& path);
    void decide(const std::string& answer, const Versions& seen);

    Session& m_session;
    Gtk::Window& m_window;
    Toasts& m_toasts;
    Import m_import;
    Glib::RefPtr<Gtk::FileChooserNative> m_chooser;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
